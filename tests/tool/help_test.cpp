// The program's help and version: every subcommand is documented, its help
// lists the options it takes, and every help line fits in 80 columns.

#include "tool_test.h"

namespace verra_test {
namespace {

char const* const kSubcommands[] = {"info", "find", "guess", "color", "convert", "preview"};

using ToolHelp = ToolTest;

void expectFitsIn80Columns(std::string const& text)
{
    for (std::string const& line : splitLines(text)) {
        EXPECT_LE(line.size(), 79u) << line;
    }
}

TEST_F(ToolHelp, ProgramHelpListsEverySubcommandAndExitCode)
{
    ToolResult const result = run({"--help"});
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_EQ(result.err, "");
    std::vector<std::string> const lines = splitLines(result.out);
    ASSERT_FALSE(lines.empty());
    EXPECT_EQ(lines[0], "Usage: colorconfig SUBCOMMAND [OPTIONS] [ARGUMENTS]");
    for (char const* name : kSubcommands) {
        bool listed = false;
        for (std::string const& line : lines) {
            listed = listed || line.rfind("  " + std::string(name) + " ", 0) == 0;
        }
        EXPECT_TRUE(listed) << name;
    }
    EXPECT_TRUE(contains(result.out, "\nExit status:\n  0  Success.\n  1  A conversion or lookup failed"));
    EXPECT_TRUE(contains(result.out, "\n  2  Bad usage:"));
    expectFitsIn80Columns(result.out);
}

TEST_F(ToolHelp, ShortOptionAndHelpWordGiveProgramHelp)
{
    ToolResult const dash = run({"-h"});
    ToolResult const word = run({"help"});
    ToolResult const full = run({"--help"});
    EXPECT_EQ(dash.exitCode, 0);
    EXPECT_EQ(word.exitCode, 0);
    EXPECT_EQ(dash.out, full.out);
    EXPECT_EQ(word.out, full.out);
}

TEST_F(ToolHelp, EverySubcommandHasHelpWithCommonOptionsAndExitCodes)
{
    for (char const* name : kSubcommands) {
        ToolResult const result = run({name, "--help"});
        EXPECT_EQ(result.exitCode, 0) << name;
        EXPECT_EQ(result.err, "") << name;
        EXPECT_EQ(result.out.rfind("Usage: colorconfig " + std::string(name) + " ", 0), 0u) << result.out;
        EXPECT_TRUE(contains(result.out, "\n  --config PATH ")) << name;
        EXPECT_TRUE(contains(result.out, "\n  -v, --verbose ")) << name;
        EXPECT_TRUE(contains(result.out, "\n  -h, --help ")) << name;
        EXPECT_TRUE(contains(result.out, "\nExit status:\n")) << name;
        expectFitsIn80Columns(result.out);
    }
}

TEST_F(ToolHelp, SubcommandHelpListsItsOwnOptions)
{
    EXPECT_TRUE(contains(run({"info", "--help"}).out, "\n  --json "));
    EXPECT_TRUE(contains(run({"guess", "--help"}).out, "\n  --no-fallback "));
    ToolResult const color = run({"color", "--help"});
    EXPECT_TRUE(contains(color.out, "Usage: colorconfig color --from NAME --to NAME R G B [ALPHA]"));
    EXPECT_TRUE(contains(color.out, "\n  --from NAME "));
    EXPECT_TRUE(contains(color.out, "\n  --to NAME "));
    ToolResult const convert = run({"convert", "--help"});
    EXPECT_TRUE(contains(convert.out, "Usage: colorconfig convert --from NAME --to NAME IN OUT"));
    EXPECT_TRUE(contains(convert.out, "\n       colorconfig convert --from NAME --to NAME --out-dir DIR IN..."));
    EXPECT_TRUE(contains(convert.out, "\n  --out-dir DIR "));
    EXPECT_TRUE(contains(run({"preview", "--help"}).out, "\n  --to NAME "));
}

TEST_F(ToolHelp, HelpWinsOverOtherArguments)
{
    ToolResult const result = run({"convert", "--bogus", "x", "--help"});
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_EQ(result.out, run({"convert", "--help"}).out);
}

TEST_F(ToolHelp, HelpWordShowsSubcommandHelp)
{
    ToolResult const result = run({"help", "preview"});
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_EQ(result.out, run({"preview", "--help"}).out);
}

TEST_F(ToolHelp, HelpAfterDoubleDashIsAnArgument)
{
    ToolResult const result = run({"find", "--", "--help"});
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_EQ(result.out, "");
    EXPECT_TRUE(contains(result.err, "unknown colour space '--help'"));
}

TEST_F(ToolHelp, VersionPrintsProjectVersion)
{
    ToolResult const result = run({"--version"});
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_EQ(result.out, std::string("colorconfig ") + VERRA_VERSION + "\n");
    EXPECT_EQ(result.err, "");
}

} // namespace
} // namespace verra_test
