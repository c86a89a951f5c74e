// The colour-space list (built-ins first, repeats and ignored names dropped)
// and the tolerant lookup of a typed name.

#include <verra_sdk/colorconfig.h>

#include "support/module_env.h"
#include "support/names.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

using namespace orv::verra_sdk;

namespace {

using verra_test::Names;
using verra_test::texts;


std::vector<std::string> const kBuiltins{"linear", "sRGB", "Rec709"};

class ColorSpaces : public ::testing::Test {
protected:
    /// Loads a config whose colour spaces are `names` (in that order).
    void load(std::vector<std::string> const& names)
    {
        verra_test::OcioConfigText config;
        config.colorSpaces = names;
        std::string const path = env.writeConfig("config.ocio", config);
        std::string const report = ColorConfig::loadOcioConfig(orv::String(path.c_str())).buf();
        ASSERT_EQ(report, "Using specified OCIO config: " + path);
    }

    verra_test::ModuleEnv env;
};

TEST_F(ColorSpaces, WithoutConfigAreExactlyTheBuiltins)
{
    // OpenImageIO's own configuration lists "default", "rgb" and "RGB" beside
    // its spellings of the built-ins: the only route on which "rgb" and "RGB"
    // both reach the list (a config file cannot hold names that differ only
    // in case), so both ignored spellings are exercised here.
    OIIO::ColorConfig& raw = colorConfig();
    std::vector<std::string> rawNames;
    for (int i = 0; i < raw.getNumColorSpaces(); ++i) {
        rawNames.emplace_back(raw.getColorSpaceNameByIndex(i));
    }
    EXPECT_EQ(rawNames, (std::vector<std::string>{"linear", "default", "rgb", "RGB", "sRGB", "Rec709"}));

    EXPECT_EQ(texts(ColorConfig::colorSpaces()), kBuiltins);
    EXPECT_STREQ(ColorConfig::loadOcioConfig("").buf(), "No OCIO config found, will use built-in color spaces.");
    EXPECT_EQ(texts(ColorConfig::colorSpaces()), kBuiltins);
}

TEST_F(ColorSpaces, ConfigNamesFollowTheBuiltinsInConfigOrder)
{
    load({"zeta", "alpha", "mid"});
    EXPECT_EQ(texts(ColorConfig::colorSpaces()),
              (std::vector<std::string>{"linear", "sRGB", "Rec709", "zeta", "alpha", "mid"}));
}

TEST_F(ColorSpaces, BuiltinNamesInOtherCaseAreDroppedAndKeepTheirForm)
{
    load({"LINEAR", "srgb", "REC709", "rec709x", "Srgb Texture"});
    EXPECT_EQ(texts(ColorConfig::colorSpaces()),
              (std::vector<std::string>{"linear", "sRGB", "Rec709", "rec709x", "Srgb Texture"}));
}

TEST_F(ColorSpaces, IgnoredNamesAreDroppedOnlyInTheirExactSpelling)
{
    load({"lin", "default", "rgb"});
    EXPECT_EQ(texts(ColorConfig::colorSpaces()), (std::vector<std::string>{"linear", "sRGB", "Rec709", "lin"}));
}

TEST_F(ColorSpaces, OtherSpellingsOfIgnoredNamesAreListed)
{
    load({"lin", "Default", "Rgb"});
    EXPECT_EQ(texts(ColorConfig::colorSpaces()),
              (std::vector<std::string>{"linear", "sRGB", "Rec709", "lin", "Default", "Rgb"}));
}

TEST_F(ColorSpaces, UpperCaseRgbIsIgnoredToo)
{
    load({"lin", "RGB"});
    EXPECT_EQ(texts(ColorConfig::colorSpaces()), (std::vector<std::string>{"linear", "sRGB", "Rec709", "lin"}));
}

TEST_F(ColorSpaces, NamesDifferingOnlyInCaseKeepTheFirstListed)
{
    // OpenColorIO merges such names when it reads a file (the later spelling
    // survives), so the module's own rule shows against the built-ins: the
    // built-in form listed first stays, the config's spelling goes.
    load({"Linear", "lin", "LIN2", "sRGB"});
    EXPECT_EQ(texts(ColorConfig::colorSpaces()),
              (std::vector<std::string>{"linear", "sRGB", "Rec709", "lin", "LIN2"}));
}

TEST_F(ColorSpaces, ReturnedListIsIndependentOfTheCache)
{
    load({"lin"});
    orv::StringVector first = ColorConfig::colorSpaces();
    first.push_back("added by the caller");
    first.clear();
    EXPECT_EQ(texts(ColorConfig::colorSpaces()), (std::vector<std::string>{"linear", "sRGB", "Rec709", "lin"}));
}

TEST_F(ColorSpaces, CacheIsNotRefilledWhenTheConfigChangesWithoutReset)
{
    load({"first"});
    ColorConfig::colorSpaces();
    verra_test::OcioConfigText other;
    other.colorSpaces = {"second"};
    ASSERT_TRUE(colorConfig().reset(env.writeConfig("other.ocio", other)));
    EXPECT_EQ(texts(ColorConfig::colorSpaces()), (std::vector<std::string>{"linear", "sRGB", "Rec709", "first"}));
}

TEST_F(ColorSpaces, FindReturnsTheListedForm)
{
    load({"ACEScg", " padded ", "Utility - Raw"});
    EXPECT_STREQ(ColorConfig::findColorSpace("srgb").buf(), "sRGB");
    EXPECT_STREQ(ColorConfig::findColorSpace(" rec709").buf(), "Rec709");
    EXPECT_STREQ(ColorConfig::findColorSpace("\tLINEAR \n").buf(), "linear");
    EXPECT_STREQ(ColorConfig::findColorSpace("acescg").buf(), "ACEScg");
    EXPECT_STREQ(ColorConfig::findColorSpace("utility - raw ").buf(), "Utility - Raw");
    // A listed name with blanks around it is found without them and returned with them.
    EXPECT_STREQ(ColorConfig::findColorSpace("PADDED").buf(), " padded ");
}

TEST_F(ColorSpaces, FindLeavesTheCallersStringAlone)
{
    orv::String typed("  srgb  ");
    EXPECT_STREQ(ColorConfig::findColorSpace(typed).buf(), "sRGB");
    EXPECT_STREQ(typed.buf(), "  srgb  ");
}

TEST_F(ColorSpaces, FindGivesEmptyForUnknownEmptyAndBlankNames)
{
    load({"lin"});
    EXPECT_TRUE(ColorConfig::findColorSpace("nope").isEmpty());
    EXPECT_TRUE(ColorConfig::findColorSpace("").isEmpty());
    EXPECT_TRUE(ColorConfig::findColorSpace(" \t ").isEmpty());
    EXPECT_TRUE(ColorConfig::findColorSpace("lin ear").isEmpty());
}

} // namespace
