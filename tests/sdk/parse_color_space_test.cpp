// ColorConfig::parseColorSpace: OpenColorIO's file rules of its
// current configuration (read from $OCIO once per process), then the name
// search of the shared configuration, then the extension guess.

#include "conversion_test_support.h"

#include <verra_sdk/colorconfig.h>

#include <OpenColorIO/OpenColorIO.h>

#include <gtest/gtest.h>

#include <string>

namespace {

namespace OCIO = OCIO_NAMESPACE;
using orv::String;
using orv::verra_sdk::ColorConfig;
using verra_test::EnvGuard;
using verra_test::OcioConfigText;

std::string parse(char const* fileName, bool fallback)
{
    return ColorConfig::parseColorSpace(String(fileName), fallback).buf();
}

class ParseColorSpace : public verra_test::ConversionTest {};

// No $OCIO: OpenColorIO's current config answers "default" for every file,
// and the built-in configuration finds no name in these file names.
TEST_F(ParseColorSpace, ExtensionGuessWhenBothConfigurationsAreSilent)
{
    for (char const* name : {"tex.png", "tex.PNG", "tex.Png", "dir/sub/tex.pNG", "a.jpg", "a.JPG", "a.tga",
                             "a.bmp", "a.b.c.png"}) {
        EXPECT_EQ(parse(name, true), "sRGB") << name;
        EXPECT_EQ(parse(name, false), "") << name;
    }
    for (char const* name : {"a.jpeg", "a.tif", "a.tiff", "a.exr", "a.hdr", "noextension", "", "dir.png/file",
                             "a.png.exr", "a.pngx"}) {
        EXPECT_EQ(parse(name, true), "linear") << name;
        EXPECT_EQ(parse(name, false), "") << name;
    }
}

TEST_F(ParseColorSpace, NameSearchOfTheBuiltInConfiguration)
{
    // OpenImageIO's built-in names are found whatever the case or flag.
    for (bool fallback : {true, false}) {
        EXPECT_EQ(parse("plate_srgb_v1.exr", fallback), "sRGB");
        EXPECT_EQ(parse("plate_Rec709.png", fallback), "Rec709");
        EXPECT_EQ(parse("beauty_linear.png", fallback), "linear");
    }
}

// After a reset, the name search follows the configuration then in force.
TEST_F(ParseColorSpace, NameSearchOfALoadedConfiguration)
{
    OcioConfigText text;
    text.colorSpaces = {"lin", "srgb_tex"};
    text.srgbSpaces = {"srgb_tex"};
    loadConfig(text);
    for (bool fallback : {true, false}) {
        EXPECT_EQ(parse("plate_srgb_tex.exr", fallback), "srgb_tex");
        EXPECT_EQ(parse("plate_srgb_tex.png", fallback), "srgb_tex");
        EXPECT_EQ(parse("shot_lin_v2.tif", fallback), "lin");
    }
    // The built-in names are gone with the built-in configuration.
    EXPECT_EQ(parse("plate_sRGB.exr", false), "");
    EXPECT_EQ(parse("plate_sRGB.exr", true), "linear");
    EXPECT_EQ(parse("plate.png", true), "sRGB");
    EXPECT_EQ(parse("plate.png", false), "");
}

/// A config with file rules: png files by extension, "*plate*" by pattern.
/// OpenColorIO 2.1 wants an extension in every pattern rule ("*" for any);
/// a rule without one makes the whole file unreadable.
OcioConfigText rulesConfig()
{
    OcioConfigText text;
    text.colorSpaces = {"lin", "srgb_tex", "raw"};
    text.srgbSpaces = {"srgb_tex"};
    text.fileRules = {
        R"(- !<Rule> {name: pngs, extension: png, pattern: "*", colorspace: srgb_tex})",
        R"(- !<Rule> {name: plates, pattern: "*plate*", extension: "*", colorspace: raw})",
    };
    return text;
}

/// Points $OCIO at the rules config before the module (or OpenColorIO) is
/// first used in this process.
class ParseColorSpaceWithRules : public verra_test::ConversionTest {
protected:
    void SetUp() override
    {
        ConversionTest::SetUp();
        if (!firstInProcess()) {
            GTEST_SKIP() << "OpenColorIO reads $OCIO once per process: run it through CTest";
        }
        m_ocioPath.set(m_dir.write("rules.ocio", rulesConfig().str()));
    }

    EnvGuard m_ocioPath{"OCIO"};
};

// OpenColorIO's extension rules ignore case.
TEST_F(ParseColorSpaceWithRules, ExtensionRule)
{
    for (bool fallback : {true, false}) {
        for (char const* name : {"tex.png", "tex.PNG", "tex.Png", "dir/tex.png", "lin.png"}) {
            EXPECT_EQ(parse(name, fallback), "srgb_tex") << name;
        }
    }
}

TEST_F(ParseColorSpaceWithRules, PatternRule)
{
    for (bool fallback : {true, false}) {
        for (char const* name : {"shot_plate_v1.exr", "plate.tif", "a/plate/b.jpg", "plate_lin.exr"}) {
            EXPECT_EQ(parse(name, fallback), "raw") << name;
        }
    }
    // Rules are taken in order: the extension rule first.
    EXPECT_EQ(parse("plate.png", false), "srgb_tex");
}

// Only the Default rule fires: its answer "default" counts as none, and the
// name search (OpenImageIO reads $OCIO too, so it knows "lin" and
// "srgb_tex") or the extension guess decides.
TEST_F(ParseColorSpaceWithRules, DefaultRuleIsIgnored)
{
    OCIO::ConstConfigRcPtr const current = OCIO::GetCurrentConfig();
    ASSERT_TRUE(current);
    EXPECT_STREQ(current->getColorSpaceFromFilepath("beauty.exr"), "default");

    EXPECT_EQ(parse("beauty.exr", true), "linear");
    EXPECT_EQ(parse("beauty.exr", false), "");
    EXPECT_EQ(parse("beauty.jpg", true), "sRGB");
    EXPECT_EQ(parse("beauty_srgb_tex.exr", false), "srgb_tex");
    EXPECT_EQ(parse("beauty_lin.jpg", false), "lin");
    EXPECT_EQ(parse("", true), "linear");
    EXPECT_EQ(parse("", false), "");
}

// The rules come from OpenColorIO's current config, not from the shared
// configuration, which a reset may point elsewhere.
TEST_F(ParseColorSpaceWithRules, RulesComeFromOpenColorIOsCurrentConfig)
{
    OcioConfigText other;
    other.colorSpaces = {"alpha", "beta"};
    loadConfig(other);
    EXPECT_EQ(parse("tex.png", false), "srgb_tex");
    EXPECT_EQ(parse("shot_plate.exr", false), "raw");
    EXPECT_EQ(parse("shot_beta.exr", false), "beta");
    EXPECT_EQ(parse("shot_lin.exr", false), ""); // "lin" is not in the shared configuration any more
}

/// $OCIO names a file that OpenColorIO cannot read: GetCurrentConfig throws
/// OCIO::Exception on every call (a failed read is not cached), and
/// parseColorSpace treats that as a configuration without file rules. The
/// shared OpenImageIO configuration falls back to its built-in spaces, so
/// the conversions keep working.
class ParseColorSpaceWithBrokenOcio : public verra_test::ConversionTest {
protected:
    void SetUp() override
    {
        ConversionTest::SetUp();
        if (!firstInProcess()) {
            GTEST_SKIP() << "OpenColorIO reads $OCIO once per process: run it through CTest";
        }
    }

    /// An unreadable current configuration offers no file rules: the guess
    /// goes on to the name search and the extension, at every call.
    void expectGuessEveryTime()
    {
        for (int i = 0; i < 2; ++i) {
            EXPECT_STREQ(ColorConfig::parseColorSpace(String("tex.png"), true).buf(), "sRGB");
            EXPECT_STREQ(ColorConfig::parseColorSpace(String("plate.exr"), true).buf(), "linear");
            EXPECT_TRUE(ColorConfig::parseColorSpace(String("plate.exr"), false).isEmpty());
        }
        // OpenColorIO itself still refuses the file.
        EXPECT_THROW(OCIO::GetCurrentConfig(), OCIO::Exception);
        // The rest of the module is unaffected.
        orv::math::RgbaT<double> const c =
            ColorConfig::linearToColorSpace(orv::math::RgbaT<double>{1.0, 0.0, 0.0, 1.0}, String("sRGB"));
        EXPECT_EQ(c.r, 0.9999999403953552);
        orv::verra_sdk::Image const image = orv::verra_sdk::Image::create(2, 2);
        verra_test::LogCapture const log;
        EXPECT_TRUE(ColorConfig::linearToColorSpace(image, String("sRGB")));
        EXPECT_TRUE(log.lines().empty());
    }

    EnvGuard m_ocioPath{"OCIO"};
};

TEST_F(ParseColorSpaceWithBrokenOcio, MissingFileFallsBackToTheGuess)
{
    m_ocioPath.set(m_dir.file("missing.ocio"));
    expectGuessEveryTime();
}

TEST_F(ParseColorSpaceWithBrokenOcio, MalformedFileFallsBackToTheGuess)
{
    m_ocioPath.set(m_dir.write("broken.ocio", "ocio_profile_version: 2.1\ncolorspaces: [\n"));
    expectGuessEveryTime();
}

// The rule line without an extension, as OpenColorIO 1.x-style examples
// write it, makes OpenColorIO 2.1 reject the whole file.
TEST_F(ParseColorSpaceWithBrokenOcio, PatternRuleWithoutExtensionMakesTheFileUnreadable)
{
    OcioConfigText text = rulesConfig();
    text.fileRules = {R"(- !<Rule> {name: plates, pattern: "*plate*", colorspace: raw})"};
    m_ocioPath.set(m_dir.write("norext.ocio", text.str()));
    expectGuessEveryTime();
}

} // namespace
