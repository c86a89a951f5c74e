// The command line: usage errors and the help they name.

#include "tool_test.h"

namespace verra_test {
namespace {

using ToolCli = ToolTest;

TEST_F(ToolCli, UsageErrorsExitWithTwoAndNameTheHelpToRead)
{
    // The words, the error, and the subcommand whose help the hint names.
    std::tuple<Words, char const*, char const*> const cases[] = {
        {{}, "A subcommand is required", ""},
        {{"bogus"}, "unknown subcommand 'bogus'", ""},
        {{"info", "--bogus"}, "The following argument was not expected: --bogus", "info "},
        {{"color", "--to", "sRGB", "1", "2", "3"}, "--from is required", "color "},
        {{"color", "--from", "linear", "--to", "sRGB", "1", "x", "-inf"}, "'x' is not a number", "color "},
        {{"convert", "--from", "linear", "--to", "sRGB", "in.png"},
         "'convert' needs IN and OUT, or --out-dir DIR and one or more IN",
         "convert "},
        {{"help", "x"}, "'help' takes one subcommand name, e.g. 'colorconfig help convert'", ""},
    };
    for (auto const& [words, error, help] : cases) {
        EXPECT_EQ(run(words), Outcome(2, "",
                                      "colorconfig: error: " + std::string(error) + "\nRun 'colorconfig " + help +
                                          "--help' for more.\n"));
    }
}

} // namespace
} // namespace verra_test
