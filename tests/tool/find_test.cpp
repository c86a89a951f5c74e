// `find`: the listed form of each name, and the closest listed names for a
// name that is not found.

#include "tool_test.h"

namespace verra_test {
namespace {

using ToolFind = ToolTest;

TEST_F(ToolFind, PrintsListedFormOfOneName)
{
    ToolResult const result = run({"find", "  SRGB "});
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_EQ(result.out, "sRGB\n");
    EXPECT_EQ(result.err, "");
}

TEST_F(ToolFind, PrefixesEachNameWhenGivenSeveral)
{
    ToolResult const result = run({"find", "srgb", "rec709", "LINEAR"});
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_EQ(result.out, "srgb: sRGB\nrec709: Rec709\nLINEAR: linear\n");
}

TEST_F(ToolFind, FindsNamesOfTheConfig)
{
    std::string const config = writeConfig(sampleConfig());
    ToolResult const result = run({"find", "--config", config, "SRGB_TEX", "Raw"});
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_EQ(result.out, "SRGB_TEX: srgb_tex\nRaw: raw\n");
}

TEST_F(ToolFind, UnknownNameFailsWithClosestNames)
{
    std::string const config = writeConfig(sampleConfig());
    ToolResult const result = run({"find", "--config", config, "srgbtex"});
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_EQ(result.out, "");
    EXPECT_EQ(result.err, "colorconfig: error: unknown colour space 'srgbtex'; closest: 'srgb_tex', 'sRGB'\n");
}

TEST_F(ToolFind, NameContainedInListedNamesIsClose)
{
    ToolResult const result = run({"find", "lin"});
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_EQ(result.err, "colorconfig: error: unknown colour space 'lin'; closest: 'linear'\n");
}

TEST_F(ToolFind, UnknownNameWithNothingClose)
{
    ToolResult const result = run({"find", "zzzzzzzz"});
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_EQ(result.err,
              "colorconfig: error: unknown colour space 'zzzzzzzz' ('colorconfig info' lists them all)\n");
}

TEST_F(ToolFind, FoundNamesArePrintedBesideAFailure)
{
    ToolResult const result = run({"find", "srgb", "nope", "rec709"});
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_EQ(result.out, "srgb: sRGB\nrec709: Rec709\n");
    EXPECT_TRUE(contains(result.err, "unknown colour space 'nope'"));
}

TEST_F(ToolFind, EmptyNameIsNotFound)
{
    ToolResult const result = run({"find", ""});
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_EQ(result.out, "");
    EXPECT_EQ(result.err, "colorconfig: error: unknown colour space '' ('colorconfig info' lists them all)\n");
}

} // namespace
} // namespace verra_test
