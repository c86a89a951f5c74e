// The command line: usage errors, help, and the subcommands that print
// names and colours (color, find, guess), run in this process.

#include "tool_test.h"

#include <fmt/format.h>

#include <cmath>
#include <limits>

namespace verra_test {
namespace {

namespace sdk = orv::verra_sdk;
using ToolCli = ToolTest;

TEST_F(ToolCli, UsageErrorsExitWithTwoAndSayWhatIsWrong)
{
    Words const color{"color", "--from", "linear", "--to", "sRGB"};
    auto const colorWith = [&](Words const& more) {
        Words words = color;
        words.insert(words.end(), more.begin(), more.end());
        return words;
    };
    // The words, a part of the error, and the subcommand whose help the hint names.
    struct Case { Words words; char const *error, *help; } const cases[] = {
        {{}, "A subcommand is required", ""},
        {{"bogus"}, "unknown subcommand 'bogus'", ""},
        {{"--bogus", "info"}, "--bogus", ""},
        {{"info", "--bogus"}, "--bogus", " info"},
        {{"color", "--to", "sRGB", "1", "2", "3", "--from"}, "--from", " color"},
        {{"color", "--to", "sRGB", "1", "2", "3"}, "--from is required", " color"},
        {{"color", "--from", "a", "--from", "b", "--to", "c", "1", "2", "3"}, "--from", " color"},
        {colorWith({"1", "2"}), "At least 3", " color"},
        {colorWith({"1", "2", "3", "4", "5"}), "5", " color"},
        {colorWith({"1", "x", "3"}), "'x' is not a number", " color"},
        {{"convert", "--from", "linear", "--to", "sRGB", "in.png"},
         "'convert' needs IN and OUT, or --out-dir DIR and one or more IN", " convert"},
        {{"preview", "in.exr"}, "IN_OUT", " preview"},
        {{"find"}, "NAME is required", " find"},
        {{"help", "x"}, "'help' takes one subcommand name, e.g. 'colorconfig help convert'", ""},
    };
    for (Case const& c : cases) {
        Outcome const result = run(c.words);
        std::string const hint = "\nRun 'colorconfig" + std::string(c.help) + " --help' for more.";
        EXPECT_TRUE(result.code == 2 && result.out.empty() &&
                    Strutil::contains(result.err, c.error) &&
                    Strutil::starts_with(result.err, "colorconfig: error: ") &&
                    Strutil::ends_with(result.err, hint + "\n"))
            << Strutil::join(c.words, " ") << ": " << result.code << "\n" << result.err;
    }
}

TEST_F(ToolCli, HelpListsSubcommandsOptionsAndExitCodesInEightyColumns)
{
    Words const names{"info", "find", "guess", "color", "convert", "preview"};
    for (Words const& words : {Words{"--help"}, Words{"-h"}, Words{"help"}, Words{"help", "color"},
                               Words{"convert", "--config", "x", "-h"}, Words{"color", "--help"},
                               Words{"find", "--help"}, Words{"guess", "--help"},
                               Words{"info", "--help"}, Words{"preview", "--help"}}) {
        Outcome const help = run(words);
        std::string const all = Strutil::join(words, " ");
        EXPECT_EQ(help.code, 0) << all;
        bool const program = words.size() == 1;
        std::string const usage = "Usage: colorconfig " + words[program ? 0 : words[0] == "help"];
        Words const parts{usage, "--config PATH", "-v,--verbose"};
        for (std::string const& part : program ? names : parts) {
            std::string const shown = program ? "\n  " + part + " " : part;
            EXPECT_TRUE(Strutil::contains(help.out, shown)) << all << ": " << part;
        }
        std::string const status = "\nExit status:\n  0  Success.\n  1  A conversion";
        EXPECT_TRUE(Strutil::contains(help.out, status)) << all;
        for (auto const& line : Strutil::splits(help.out, "\n")) {
            EXPECT_LE(line.size(), 79u) << all << ": " << line;
        }
    }
    EXPECT_EQ(run({"help", "convert"}).out, run({"convert", "--help"}).out);
    EXPECT_TRUE(Strutil::contains(run({"convert", "--help"}).out, "--out-dir DIR"));
    EXPECT_EQ(run({"--version"}).out, "colorconfig " VERRA_VERSION "\n");
    // After "--", --help is a name like any other.
    EXPECT_TRUE(Strutil::starts_with(run({"find", "--", "--help"}).err,
                                     "colorconfig: error: unknown colour space '--help'"));
}

TEST_F(ToolCli, ColorPrintsWhatTheModuleComputesWithSeventeenDigits)
{
    std::string const config = sampleConfig();
    double const inf = std::numeric_limits<double>::infinity();
    struct Case { char const *from, *to; std::vector<double> values; char const* route; };
    Case const cases[] = {
        {"linear", "sRGB", {0.5, 0.25, 1}, "built-in curve"},
        {"LINEAR ", " rec709", {0.18, -0.5, 2, 0.3}, "built-in curve"},
        {"sRGB", "linear", {std::nan(""), inf, -inf}, "built-in curve"},
        {"sRGB", "sRGB", {0.1, 0.2, 0.3, 0.4}, "same"},
        {"srgb_tex", "lin", {0.5, -0.25, 1e-3}, "processor"},
    };
    for (Case const& c : cases) {
        Words words{"color", "--config", config, "--verbose", "--from", c.from, "--to", c.to};
        for (double value : c.values) {
            words.push_back(fmt::format("{}", value));
        }
        Outcome const result = run(words);
        orv::String const from = sdk::ColorConfig::findColorSpace(c.from);
        orv::String const to = sdk::ColorConfig::findColorSpace(c.to);
        std::vector<double> v = c.values;
        v.resize(4, 1.0);
        auto const want = sdk::ColorConfig::transform({v[0], v[1], v[2], v[3]}, from, to);
        std::string line = fmt::format("{:.17g} {:.17g} {:.17g}", want.r, want.g, want.b);
        line += c.values.size() == 4 ? fmt::format(" {:.17g}\n", want.a) : "\n";
        std::string const notes = fmt::format("colorconfig: Using specified OCIO config: {}\n"
                                              "colorconfig: route from '{}' to '{}': {}\n",
                                              config, from.view(), to.view(), c.route);
        EXPECT_EQ(result, (Outcome{0, line, notes}));
    }
    EXPECT_EQ(run({"color", "--from", "linear", "--to", "sRGB", "0", "0", "0", "0.123456789"}),
              (Outcome{0, "0 0 0 0.123456789\n", ""}));
    EXPECT_EQ(run({"color", "--from", "sRGB", "--to", "Rec709", "0.5", "0.5", "0.5"}),
              (Outcome{1, "", "colorconfig: error: cannot convert from 'sRGB' to 'Rec709' with "
                              "this config\n"}));
}

TEST_F(ToolCli, FindPrintsListedNamesAndSuggestsCloseOnes)
{
    std::string const config = sampleConfig();
    std::string const error = "colorconfig: error: unknown colour space ";
    struct Case { Words names; int code; std::string out, err; } const cases[] = {
        // The built-in sRGB converts to nothing of this config: found, never suggested.
        {{" SRGB "}, 0, "sRGB\n", "colorconfig: ' SRGB ': built-in, converts only to the other "
                                   "built-ins under this config\n"},
        {{"LIN", "srgb_TEX"}, 0, "LIN: lin\nsrgb_TEX: srgb_tex\n", ""},
        {{"srgb_te"}, 1, "", error + "'srgb_te'; closest: 'srgb_tex'\n"},
        {{"rawr", "lin"}, 1, "lin: lin\n", error + "'rawr'; closest: 'raw'\n"},
        {{"zzzzz"}, 1, "", error + "'zzzzz' ('colorconfig info' lists them all)\n"},
        {{""}, 1, "", error + "'' ('colorconfig info' lists them all)\n"},
    };
    for (Case const& c : cases) {
        Words words{"find", "--config", config};
        words.insert(words.end(), c.names.begin(), c.names.end());
        EXPECT_EQ(run(words), (Outcome{c.code, c.out, c.err}));
    }
}

TEST_F(ToolCli, GuessNamesTheSpaceOfEachFileWithoutOpeningIt)
{
    EXPECT_EQ(run({"guess", "/no/wood.png", "plate_ACEScg.exr", "scan.dpx"}),
              (Outcome{0, "/no/wood.png: sRGB\nplate_ACEScg.exr: linear\nscan.dpx: linear\n", ""}));
    EXPECT_EQ(run({"guess", "shot_rec709_v2.exr"}), (Outcome{0, "Rec709\n", ""}));
    EXPECT_EQ(run({"guess", "--no-fallback", "render.exr", "texture_srgb.png"}),
              (Outcome{1, "texture_srgb.png: sRGB\n",
                       "colorconfig: error: no colour space found for 'render.exr'\n"}));
}

} // namespace
} // namespace verra_test
