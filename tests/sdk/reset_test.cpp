// The reset: every cache emptied and refilled from the new configuration,
// and the one log line when OpenImageIO refuses a file.

#include <verra_sdk/colorconfig.h>

#include "support/log_capture.h"
#include "support/module_env.h"
#include "support/names.h"

#include <OpenImageIO/imageio.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

using namespace orv::verra_sdk;

namespace {

using verra_test::Names;
using verra_test::texts;



Names keys(orv::ds::HashMap<orv::String, orv::StringVector> const& map)
{
    Names out;
    for (auto const& node : map) {
        out.emplace_back(node.key.buf());
    }
    std::sort(out.begin(), out.end());
    return out;
}

class Reset : public ::testing::Test {
protected:
    verra_test::ModuleEnv env;
    verra_test::LogCapture log;
};

TEST_F(Reset, SecondConfigLeavesNothingOfTheFirst)
{
    verra_test::OcioConfigText first;
    first.colorSpaces = {"one_a", "one_b"};
    first.displays = {{"OneDisplay", {"OneView"}}, {"Both", {"OneOnly"}}};
    first.looks = {"one_look"};
    first.roles = {{"one_role", "one_a"}};
    verra_test::OcioConfigText second;
    second.colorSpaces = {"two_a"};
    second.displays = {{"TwoDisplay", {"TwoView"}}, {"Both", {"TwoOnly"}}};
    second.looks = {"two_look"};
    second.roles = {{"two_role", "two_a"}};

    ColorConfig::loadOcioConfig(orv::String(env.writeConfig("first.ocio", first).c_str()));
    ASSERT_EQ(texts(looks()), Names{"one_look"});
    ColorConfig::loadOcioConfig(orv::String(env.writeConfig("second.ocio", second).c_str()));

    EXPECT_EQ(texts(ColorConfig::colorSpaces()), (Names{"linear", "sRGB", "Rec709", "two_a"}));
    EXPECT_EQ(texts(displays()), (Names{"TwoDisplay", "Both"}));
    auto map = views();
    EXPECT_EQ(keys(map), (Names{"Both", "TwoDisplay"}));
    EXPECT_EQ(texts(*map.find("Both")), Names{"TwoOnly"});
    EXPECT_EQ(texts(looks()), Names{"two_look"});
    Names roleNames = texts(roles());
    std::sort(roleNames.begin(), roleNames.end());
    EXPECT_EQ(roleNames, (Names{"default", "two_role"}));
    EXPECT_TRUE(log.lines().empty());
}

TEST_F(Reset, BackToNoConfigLeavesOnlyTheBuiltins)
{
    verra_test::OcioConfigText config;
    config.displays = {{"D", {"V"}}};
    config.looks = {"L"};
    ColorConfig::loadOcioConfig(orv::String(env.writeConfig("c.ocio", config).c_str()));
    ASSERT_FALSE(displays().empty());
    ColorConfig::loadOcioConfig("");
    EXPECT_EQ(texts(ColorConfig::colorSpaces()), (Names{"linear", "sRGB", "Rec709"}));
    EXPECT_TRUE(displays().empty());
    EXPECT_EQ(views().size(), 0u);
    EXPECT_TRUE(looks().empty());
    EXPECT_TRUE(roles().empty());
}

TEST_F(Reset, RefusedFileLogsThePendingGlobalErrorOnce)
{
    std::string const garbage = env.dir().write("garbage.ocio", "this: [is not a config\n");
    // Make OpenImageIO's global error text pending with a failed open.
    EXPECT_EQ(OIIO::ImageInput::open(env.dir().file("missing.exr")), nullptr);
    std::string const pending = OIIO::geterror(false);
    ASSERT_FALSE(pending.empty());

    std::string const report = ColorConfig::loadOcioConfig(orv::String(garbage.c_str())).buf();
    // The report was formatted before the reset and says what was chosen.
    EXPECT_EQ(report, "Using specified OCIO config: " + garbage);
    EXPECT_EQ(log.lines(), Names{"OIIO failed to reset OCIO: " + pending});
    EXPECT_TRUE(OIIO::geterror(false).empty());
    // The caches are refilled from what OpenImageIO kept: its built-in spaces.
    EXPECT_EQ(texts(ColorConfig::colorSpaces()), (Names{"linear", "sRGB", "Rec709"}));
}

TEST_F(Reset, RefusedFileWithoutGlobalErrorLogsNothing)
{
    std::string const garbage = env.dir().write("garbage.ocio", "\x01\x02 binary garbage \xff");
    OIIO::geterror(true);
    std::string const report = ColorConfig::loadOcioConfig(orv::String(garbage.c_str())).buf();
    EXPECT_EQ(report, "Using specified OCIO config: " + garbage);
    EXPECT_TRUE(log.lines().empty());
    // OpenImageIO keeps the reason in its configuration object instead.
    EXPECT_FALSE(colorConfig().geterror(false).empty());
    EXPECT_EQ(texts(ColorConfig::colorSpaces()), (Names{"linear", "sRGB", "Rec709"}));
    EXPECT_TRUE(displays().empty());
}

} // namespace
