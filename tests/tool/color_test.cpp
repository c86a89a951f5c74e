// `color`: one colour through ColorConfig::transform, printed with 17
// significant digits, so that the printed text reads back as the very
// double that the module computed.

#include "tool_test.h"

#include <verra_sdk/colorconfig.h>

#include <cstdio>
#include <cstdlib>

namespace verra_test {
namespace {

namespace sdk = orv::verra_sdk;

using ToolColor = ToolTest;

std::string printed(double value)
{
    char text[32];
    std::snprintf(text, sizeof text, "%.17g", value);
    return text;
}

/// The line the program should print for `color` converted in this process.
std::string expectedLine(orv::math::RgbaT<double> color, char const* from, char const* to, bool withAlpha)
{
    orv::math::RgbaT<double> const c = sdk::ColorConfig::transform(color, from, to);
    std::string line = printed(c.r) + " " + printed(c.g) + " " + printed(c.b);
    return (withAlpha ? line + " " + printed(c.a) : line) + "\n";
}

std::vector<double> numbers(std::string const& line)
{
    std::vector<double> values;
    char const* p = line.c_str();
    char* end = nullptr;
    for (double v = std::strtod(p, &end); end != p; v = std::strtod(p, &end)) {
        values.push_back(v);
        p = end;
    }
    return values;
}

TEST_F(ToolColor, LinearToSrgbMatchesTheModuleExactly)
{
    ToolResult const result = run({"color", "--from", "linear", "--to", "sRGB", "0.5", "0.25", "1"});
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_EQ(result.err, "");
    sdk::ColorConfig::loadOcioConfig("");
    EXPECT_EQ(result.out, expectedLine({0.5, 0.25, 1.0, 1.0}, "linear", "sRGB", false));
    std::vector<double> const values = numbers(result.out);
    ASSERT_EQ(values.size(), 3u);
    orv::math::RgbaT<double> const c = sdk::ColorConfig::transform({0.5, 0.25, 1.0, 1.0}, "linear", "sRGB");
    EXPECT_EQ(values[0], c.r);
    EXPECT_EQ(values[1], c.g);
    EXPECT_EQ(values[2], c.b);
    EXPECT_NEAR(values[0], 0.7353569, 1e-7);
}

TEST_F(ToolColor, AlphaIsPrintedUnchanged)
{
    ToolResult const result = run({"color", "--from", "sRGB", "--to", "linear", "0.5", "0.5", "0.5", "0.3"});
    EXPECT_EQ(result.exitCode, 0);
    sdk::ColorConfig::loadOcioConfig("");
    EXPECT_EQ(result.out, expectedLine({0.5, 0.5, 0.5, 0.3}, "sRGB", "linear", true));
    EXPECT_EQ(numbers(result.out).at(3), 0.3);
}

TEST_F(ToolColor, NegativeValuesAreNumbersNotOptions)
{
    ToolResult const result = run({"color", "--from", "linear", "--to", "Rec709", "-0.5", "-.25", "2"});
    EXPECT_EQ(result.exitCode, 0) << result.err;
    sdk::ColorConfig::loadOcioConfig("");
    EXPECT_EQ(result.out, expectedLine({-0.5, -0.25, 2.0, 1.0}, "linear", "Rec709", false));
    EXPECT_EQ(numbers(result.out).at(0), -2.25);
}

TEST_F(ToolColor, NamesAreResolvedWithoutRegardToCase)
{
    ToolResult const result = run({"color", "--from", "LINEAR", "--to", " srgb ", "1", "1", "1"});
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_EQ(result.out, "0.99999994039535522 0.99999994039535522 0.99999994039535522\n");
}

TEST_F(ToolColor, SameSpaceGivesTheColourBack)
{
    ToolResult const result = run({"color", "--from", "Rec709", "--to", "rec709", "0.1", "0.2", "0.3", "0.4"});
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_EQ(result.out, printed(0.1) + " " + printed(0.2) + " " + printed(0.3) + " " + printed(0.4) + "\n");
}

TEST_F(ToolColor, ConfigSpacesGoThroughTheModule)
{
    std::string const config = writeConfig(sampleConfig());
    ToolResult const result =
        run({"color", "--config", config, "--from", "srgb_tex", "--to", "lin", "0.5", "0.04", "0.9"});
    EXPECT_EQ(result.exitCode, 0) << result.err;
    sdk::ColorConfig::loadOcioConfig(orv::String(config));
    std::string const expected = expectedLine({0.5, 0.04, 0.9, 1.0}, "srgb_tex", "lin", false);
    EXPECT_EQ(result.out, expected);
    EXPECT_NE(expected, printed(0.5) + " " + printed(0.04) + " " + printed(0.9) + "\n");
}

TEST_F(ToolColor, VerboseTellsTheRoute)
{
    std::string const config = writeConfig(sampleConfig());
    sdk::ColorConfig::loadOcioConfig(orv::String(config));
    struct Case {
        char const* from;
        char const* to;
        char const* route;
    };
    for (Case const& c : {Case{"linear", "SRGB", "built-in curve"}, Case{"Rec709", "linear", "built-in curve"},
                          Case{"srgb_tex", "lin", "processor"}, Case{"lin", "LIN", "same"}}) {
        ToolResult const result =
            run({"color", "-v", "--config", config, "--from", c.from, "--to", c.to, "1", "1", "1"});
        EXPECT_EQ(result.exitCode, 0) << result.err;
        std::vector<std::string> const lines = splitLines(result.err);
        ASSERT_EQ(lines.size(), 2u) << result.err;
        std::string const from = sdk::ColorConfig::findColorSpace(c.from).buf();
        std::string const to = sdk::ColorConfig::findColorSpace(c.to).buf();
        EXPECT_EQ(lines[1], "colorconfig: route from '" + from + "' to '" + to + "': " + c.route);
    }
}

TEST_F(ToolColor, UnknownColourSpaceFails)
{
    ToolResult const result = run({"color", "--from", "srgbb", "--to", "linear", "1", "1", "1"});
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_EQ(result.out, "");
    EXPECT_EQ(result.err, "colorconfig: error: unknown colour space 'srgbb'; closest: 'sRGB'\n");
}

TEST_F(ToolColor, ConversionTheConfigCannotMakeFails)
{
    // sRGB to Rec709 needs a processor, and the built-in spaces have none.
    ToolResult const result = run({"color", "--from", "sRGB", "--to", "Rec709", "0.5", "0.5", "0.5"});
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_EQ(result.out, "");
    EXPECT_EQ(result.err, "colorconfig: error: cannot convert from 'sRGB' to 'Rec709' with this config\n");
}

} // namespace
} // namespace verra_test
