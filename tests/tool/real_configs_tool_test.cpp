// The program on real public configs written by others, from the folder that
// $VERRA_SHARED_CONFIGS names; every test skips when it is absent.

#include "json_value.h"
#include "test_images.h"
#include "tool_test.h"

#include <verra_sdk/colorconfig.h>

#include <cstdlib>
#include <filesystem>

namespace verra_test {
namespace {

namespace sdk = orv::verra_sdk;

/// The loadable configs of the shared folder, relative to it.
char const* const kLoadable[] = {
    "aces-cg-config-v1.0.0_aces-v1.3_ocio-v2.1/cg-config-v1.0.0_aces-v1.3_ocio-v2.1.ocio",
    "ocio-v2-demo/ocio-v2_demo.ocio",
    "imageworks-nuke-default/config.ocio",
    "ocio-test-context_test1/config.ocio",
};
char const* const kAces = kLoadable[0];
char const* const kTooNew = "aces-cg-config-v2.1.0_aces-v1.3_ocio-v2.3/cg-config-v2.1.0_aces-v1.3_ocio-v2.3.ocio";

class ToolRealConfigs : public ToolTest {
protected:
    void SetUp() override
    {
        char const* folder = std::getenv("VERRA_SHARED_CONFIGS");
        if (folder == nullptr || !std::filesystem::is_directory(folder)) {
            GTEST_SKIP() << "VERRA_SHARED_CONFIGS does not name the folder of shared configs";
        }
        m_shared = folder;
    }

    std::string config(char const* relative) const { return m_shared + "/" + relative; }

    std::string m_shared;
};

std::vector<std::string> strings(orv::StringVector const& list)
{
    std::vector<std::string> result;
    for (orv::String const& item : list) {
        result.emplace_back(item.view());
    }
    return result;
}

TEST_F(ToolRealConfigs, InfoJsonHoldsWhatTheModuleAnswersForEachConfig)
{
    for (char const* relative : kLoadable) {
        std::string const path = config(relative);
        ToolResult const result = run({"info", "--json", "--config", path});
        EXPECT_EQ(result.exitCode, 0) << relative;
        EXPECT_EQ(result.err, "") << relative;
        std::string error;
        std::optional<JsonValue> const json = parseJson(result.out, &error);
        ASSERT_TRUE(json) << relative << ": " << error;

        orv::String const report = sdk::ColorConfig::loadOcioConfig(orv::String(path));
        EXPECT_EQ(json->member("report")->text, std::string(report.view()));
        EXPECT_EQ(json->member("colorSpaces")->strings(), strings(sdk::ColorConfig::colorSpaces())) << relative;
        EXPECT_GT(json->member("colorSpaces")->items.size(), 3u) << relative;
        EXPECT_EQ(json->member("defaultDisplay")->text, std::string(sdk::defaultDisplay().view()));
        EXPECT_EQ(json->member("defaultView")->text, std::string(sdk::defaultView().view()));
        EXPECT_EQ(json->member("looks")->strings(), strings(sdk::looks())) << relative;
        EXPECT_EQ(json->member("roles")->strings(), strings(sdk::roles())) << relative;
        std::vector<std::string> names;
        for (JsonValue const& display : json->member("displays")->items) {
            names.push_back(display.member("name")->text);
        }
        EXPECT_EQ(names, strings(sdk::displays())) << relative;
    }
}

TEST_F(ToolRealConfigs, InfoTextFitsIn80Columns)
{
    for (char const* relative : kLoadable) {
        ToolResult const result = run({"info", "--config", config(relative)});
        EXPECT_EQ(result.exitCode, 0) << relative;
        for (std::string const& line : splitLines(result.out)) {
            // Only a single word longer than a line (the config's path) may
            // overflow, on a line of its own.
            bool const oneWord = line.find(' ', 2) == std::string::npos;
            EXPECT_TRUE(line.size() <= 79 || oneWord) << relative << ": " << line;
        }
    }
}

TEST_F(ToolRealConfigs, TooNewConfigIsAnErrorAndTheBuiltInsAreUsed)
{
    ToolResult const result = run({"info", "--json", "--config", config(kTooNew)});
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_EQ(result.err.rfind("colorconfig: error: ", 0), 0u) << result.err;
    std::optional<JsonValue> const json = parseJson(result.out, nullptr);
    ASSERT_TRUE(json);
    EXPECT_EQ(json->member("colorSpaces")->strings(), (std::vector<std::string>{"linear", "sRGB", "Rec709"}));
    ASSERT_EQ(json->member("errors")->items.size(), 1u);
    EXPECT_EQ("colorconfig: error: " + json->member("errors")->items[0].text + "\n", result.err);
}

TEST_F(ToolRealConfigs, ColourThroughAnAcesConfigMatchesTheModule)
{
    std::string const path = config(kAces);
    ToolResult const result =
        run({"color", "--config", path, "--from", "acescg", "--to", "sRGB - Texture", "0.18", "0.5", "1.2"});
    EXPECT_EQ(result.exitCode, 0) << result.err;
    sdk::ColorConfig::loadOcioConfig(orv::String(path));
    orv::math::RgbaT<double> const c = sdk::ColorConfig::transform({0.18, 0.5, 1.2, 1.0}, "ACEScg", "sRGB - Texture");
    char expected[128];
    std::snprintf(expected, sizeof expected, "%.17g %.17g %.17g\n", c.r, c.g, c.b);
    EXPECT_EQ(result.out, expected);
    EXPECT_NE(c.r, 0.18);
}

TEST_F(ToolRealConfigs, ConvertThroughAnAcesConfigMatchesTheModule)
{
    std::string const path = config(kAces);
    std::string const input = file("plate.exr");
    writeFloats(input, 8, 8, 3, OIIO::TypeDesc::FLOAT, floatRamp(8, 8, 3));
    ImageFile const in = readImageFile(input);
    ToolResult const result =
        run({"convert", "--config", path, "--from", "ACEScg", "--to", "ACES2065-1", input, file("out.exr")});
    EXPECT_EQ(result.exitCode, 0) << result.err;
    ImageFile const out = readImageFile(file("out.exr"));
    ASSERT_EQ(out.floats.size(), in.floats.size());
    EXPECT_NE(out.floats, in.floats);

    sdk::ColorConfig::loadOcioConfig(orv::String(path));
    for (std::size_t i = 0; i < in.floats.size(); i += 3) {
        orv::math::RgbaT<double> const c = sdk::ColorConfig::transform(
            {in.floats[i], in.floats[i + 1], in.floats[i + 2], 1.0}, "ACEScg", "ACES2065-1");
        ASSERT_FLOAT_EQ(out.floats[i + 0], static_cast<float>(c.r)) << "pixel " << i / 3;
        ASSERT_FLOAT_EQ(out.floats[i + 1], static_cast<float>(c.g)) << "pixel " << i / 3;
        ASSERT_FLOAT_EQ(out.floats[i + 2], static_cast<float>(c.b)) << "pixel " << i / 3;
    }
}

} // namespace
} // namespace verra_test
