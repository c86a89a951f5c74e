// What a process does once, each test in a process of its own: the module's
// first use (OpenColorIO's logging silenced once, the shared configuration
// obtained only when needed, caches filled on first demand) and OpenColorIO's
// reading of $OCIO, whose file rules guess a file's colour space.

#include "support/module_env.h"

#include <OpenColorIO/OpenColorIO.h>

namespace OCIO = OCIO_NAMESPACE;
using namespace verra_test;

namespace {

// OpenColorIO's logging level shows whether the module has obtained the
// shared configuration: it sets the level to NONE then, and only then.
TEST(FirstUse, ConfigurationIsObtainedOnlyWhenNeededAndLoggingSilencedOnce)
{
    ModuleEnv const env;
    LogCapture const log;
    OCIO::SetLoggingLevel(OCIO::LOGGING_LEVEL_INFO);
    // Neither a form of "linear", nor an invalid image, nor equal names need it.
    EXPECT_STREQ(ColorConfig::findColorSpace("  LINEAR\t").buf(), "linear");
    EXPECT_FALSE(ColorConfig::transform(Image(), "linear", "sRGB"));
    EXPECT_TRUE(ColorConfig::transform(Image::create(2, 2), "", "sRGB"));
    EXPECT_EQ(OCIO::GetLoggingLevel(), OCIO::LOGGING_LEVEL_INFO);
    // A buffer's "linear" target has no shortcut: it obtains the configuration.
    orv::verra::Vector2d<orv::verra::float4, true> pixels;
    pixels.allocate(1, 1);
    pixels.data[0] = orv::verra::float4{0.25f, 0.5f, 0.75f, 1.0f};
    EXPECT_TRUE(colorConfigTransformRgb(pixels, "linear"));
    EXPECT_EQ(OCIO::GetLoggingLevel(), OCIO::LOGGING_LEVEL_NONE);
    EXPECT_EQ(pixels.data[0].g, 0.5f);
    // The first lookup of another name fills the empty colour-space cache.
    EXPECT_STREQ(ColorConfig::findColorSpace("srgb").buf(), "sRGB");
    // A host that turns logging back on keeps it.
    OCIO::SetLoggingLevel(OCIO::LOGGING_LEVEL_WARNING);
    ColorConfig::transform(orv::math::RgbaT<double>{0.5, 0.5, 0.5, 1.0}, "lnf", "sRGB");
    displays();
    EXPECT_EQ(OCIO::GetLoggingLevel(), OCIO::LOGGING_LEVEL_WARNING);
    EXPECT_EQ(log.lines(), Lines{});
}

// $OCIO names, before anything reads it, a config with a display of two
// views and file rules: png files by extension, "*plate*" by pattern
// (OpenColorIO 2.1 wants an extension in every pattern rule, "*" for any).
TEST(FirstUse, OcioVariableGivesTheStartingConfigAndTheFileRules)
{
    ModuleEnv const env;
    env.ocio().set(env.dir().write("rules.ocio", ocioConfig({"lin", "srgb_tex", "raw"}, {}, R"(file_rules:
  - !<Rule> {name: pngs, extension: png, pattern: "*", colorspace: srgb_tex}
  - !<Rule> {name: plates, pattern: "*plate*", extension: "*", colorspace: raw}
  - !<Rule> {name: Default, colorspace: default}
displays: {Monitor: [!<View> {name: Film, colorspace: lin}, !<View> {name: Raw, colorspace: raw}]}
)")));
    // The views map waits for the display list, which nothing has asked for.
    EXPECT_EQ(views().size(), 0u);
    EXPECT_EQ(views().size(), 0u);
    ASSERT_EQ(displays().size(), 1u);
    ASSERT_NE(views().find("Monitor"), nullptr);
    EXPECT_EQ(views().find("Monitor")->size(), 2u);
    // The rules in order (extension rules ignore case), then, when only the
    // Default rule answers ("default"), the name search and the extension.
    expectParsed({"tex.png", "dir/t.PNG", "plate.png", "beauty_srgb_tex.exr"}, "srgb_tex", "srgb_tex");
    expectParsed({"shot_plate_v1.exr", "a/plate/b.jpg"}, "raw", "raw");
    expectParsed({"beauty.jpg"}, "sRGB", "");
    // The rules stay OpenColorIO's; the name search follows the reset.
    ColorConfig::loadOcioConfig(env.dir().write("other.ocio", ocioConfig({"alpha", "beta"})).c_str());
    EXPECT_STREQ(ColorConfig::parseColorSpace("tex.png", false).buf(), "srgb_tex");
    EXPECT_STREQ(ColorConfig::parseColorSpace("shot_beta.exr", false).buf(), "beta");
    EXPECT_STREQ(ColorConfig::parseColorSpace("shot_srgb_tex.exr", false).buf(), "");
}

// $OCIO names a file that OpenColorIO cannot read: its current config throws
// at every call, and the guess goes on without file rules.
TEST(FirstUse, UnreadableOcioVariableLeavesTheGuessToNamesAndExtensions)
{
    ModuleEnv const env;
    env.ocio().set(env.dir().write("broken.ocio", "ocio_profile_version: 2.1\ncolorspaces: [\n"));
    for (int i = 0; i < 2; ++i) {
        EXPECT_STREQ(ColorConfig::parseColorSpace("tex.png", true).buf(), "sRGB");
        EXPECT_STREQ(ColorConfig::parseColorSpace("plate.exr", false).buf(), "");
    }
    EXPECT_THROW(OCIO::GetCurrentConfig(), OCIO::Exception);
}

} // namespace
