// Bad usage: exit code 2, one error line naming the problem, a usage hint,
// and nothing on standard output.

#include "test_images.h"
#include "tool_test.h"

#include <fstream>

namespace verra_test {
namespace {

using ToolUsage = ToolTest;

/// Expects bad usage of `result` and returns the first line of its
/// standard error.
std::string usageError(ToolResult const& result)
{
    EXPECT_EQ(result.exitCode, 2) << result.err;
    EXPECT_EQ(result.out, "");
    std::vector<std::string> const lines = splitLines(result.err);
    EXPECT_GE(lines.size(), 2u) << result.err;
    if (lines.size() >= 2) {
        EXPECT_EQ(lines[1].rfind("Usage: colorconfig ", 0), 0u) << result.err;
    }
    return lines.empty() ? std::string() : lines[0];
}

TEST_F(ToolUsage, NoArguments)
{
    EXPECT_EQ(usageError(run({})), "colorconfig: error: no subcommand given");
}

TEST_F(ToolUsage, UnknownSubcommand)
{
    EXPECT_EQ(usageError(run({"frobnicate"})), "colorconfig: error: unknown subcommand 'frobnicate'");
}

TEST_F(ToolUsage, UnknownOptionBeforeSubcommand)
{
    EXPECT_EQ(usageError(run({"--json"})), "colorconfig: error: unknown option '--json'");
}

TEST_F(ToolUsage, UnknownOption)
{
    ToolResult const result = run({"info", "--bogus"});
    EXPECT_EQ(usageError(result), "colorconfig: error: unknown option '--bogus'");
    EXPECT_TRUE(contains(result.err, "Run 'colorconfig info --help' for more."));
}

TEST_F(ToolUsage, OptionWithoutItsValue)
{
    EXPECT_EQ(usageError(run({"color", "1", "2", "3", "--to", "sRGB", "--from"})),
              "colorconfig: error: option '--from' needs a value (NAME)");
}

TEST_F(ToolUsage, MissingRequiredOption)
{
    EXPECT_EQ(usageError(run({"color", "--from", "linear", "1", "2", "3"})),
              "colorconfig: error: missing option '--to NAME'");
}

TEST_F(ToolUsage, OptionGivenTwice)
{
    EXPECT_EQ(usageError(run({"info", "--json", "--json"})),
              "colorconfig: error: option '--json' given twice");
}

TEST_F(ToolUsage, ValueGivenToFlag)
{
    EXPECT_EQ(usageError(run({"info", "--json=yes"})), "colorconfig: error: option '--json' takes no value");
}

TEST_F(ToolUsage, MissingArguments)
{
    EXPECT_EQ(usageError(run({"find"})), "colorconfig: error: missing argument: 'find' needs at least 1 argument");
    EXPECT_EQ(usageError(run({"preview", "in.exr"})),
              "colorconfig: error: missing argument: 'preview' needs 2 arguments");
    EXPECT_EQ(usageError(run({"color", "--from", "linear", "--to", "sRGB", "1", "2"})),
              "colorconfig: error: missing argument: 'color' needs at least 3 arguments");
}

TEST_F(ToolUsage, TooManyArguments)
{
    EXPECT_EQ(usageError(run({"info", "extra"})),
              "colorconfig: error: too many arguments: 'info' takes at most 0, got 1");
    EXPECT_EQ(usageError(run({"color", "--from", "linear", "--to", "sRGB", "1", "2", "3", "4", "5"})),
              "colorconfig: error: too many arguments: 'color' takes at most 4, got 5");
}

TEST_F(ToolUsage, BadNumbers)
{
    for (char const* bad : {"x", "0.5x", "", " 1", "0x"}) {
        ToolResult const result = run({"color", "--from", "linear", "--to", "sRGB", "1", bad, "3"});
        EXPECT_EQ(usageError(result), "colorconfig: error: '" + std::string(bad) + "' is not a number");
    }
    // Infinities and NaN are numbers, negative ones too, not options.
    ToolResult const words = run({"color", "--from", "linear", "--to", "sRGB", "nan", "inf", "-inf", "-nan"});
    EXPECT_EQ(words.exitCode, 0) << words.err;
    EXPECT_EQ(words.out, "nan inf -inf -nan\n");
}

TEST_F(ToolUsage, ConvertNeedsInputAndOutput)
{
    std::string const input = file("in.png");
    writeBytes(input, 2, 2, 3, byteRamp(2, 2, 3));
    EXPECT_EQ(usageError(run({"convert", "--from", "sRGB", "--to", "linear", input})),
              "colorconfig: error: 'convert' needs IN and OUT, or --out-dir DIR and one or more IN");
    EXPECT_EQ(usageError(run({"convert", "--from", "sRGB", "--to", "linear", input, file("a.png"),
                                     file("b.png")})),
              "colorconfig: error: 'convert' needs IN and OUT, or --out-dir DIR and one or more IN");
    EXPECT_FALSE(std::ifstream(file("a.png")).good());
}

TEST_F(ToolUsage, HelpWordWithUnknownSubcommand)
{
    EXPECT_EQ(usageError(run({"help", "frobnicate"})),
              "colorconfig: error: 'help' takes one subcommand name, e.g. 'colorconfig help convert'");
}

} // namespace
} // namespace verra_test
