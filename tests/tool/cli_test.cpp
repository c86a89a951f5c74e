// The command line: usage errors, help, and the subcommands that print
// names and colours (color, find, guess), run in this process.

#include "tool_test.h"

#include <fmt/format.h>
#include <nlohmann/json.hpp>

#include <cmath>
#include <limits>

namespace verra_test {
namespace {

namespace sdk = orv::verra_sdk;
using Json = nlohmann::json;
using ToolCli = ToolTest;

TEST_F(ToolCli, UsageErrorsExitWithTwoAndSayWhatIsWrong)
{
    // The words, a part of the error, and the subcommand whose help the hint names.
    struct Case { Words words; char const *error, *help; } const cases[] = {
        {{}, "A subcommand is required", ""},
        {{"bogus"}, "unknown subcommand 'bogus'", ""},
        {{"info", "--bogus"}, "--bogus", " info"},
        {{"color", "--to", "sRGB", "1", "2", "3"}, "--from is required", " color"},
        {{"color", "--from", "linear", "--to", "sRGB", "1", "2"}, "At least 3", " color"},
        {{"color", "--from", "linear", "--to", "sRGB", "1", "x", "3"}, "'x' is not a number", " color"},
        {{"convert", "--from", "linear", "--to", "sRGB", "in.png"},
         "'convert' needs IN and OUT, or --out-dir DIR and one or more IN", " convert"},
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
    for (Words const& words : {Words{"--help"}, Words{"help", "view"}, Words{"convert", "-h"}}) {
        Outcome const help = run(words);
        EXPECT_EQ(help.code, 0);
        std::string const wanted = words.size() == 1 ? "\n  check " : "--config PATH";
        EXPECT_TRUE(Strutil::contains(help.out, wanted) &&
                    Strutil::contains(help.out, "\nExit status:\n  0  Success.\n  1  A conversion"))
            << help.out;
        for (auto const& line : Strutil::splits(help.out, "\n")) {
            EXPECT_LE(line.size(), 79u) << line;
        }
    }
    EXPECT_EQ(run({"help", "convert"}).out, run({"convert", "--help"}).out);
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
        {{" SRGB "}, 0, "sRGB\n", "colorconfig: ' SRGB ': built-in, shadows the config's 'SRGB'\n"},
        {{"LIN", "srgb_TEX"}, 0, "LIN: lin\nsrgb_TEX: srgb_tex\n", ""},
        {{"srgb_te"}, 1, "", error + "'srgb_te'; closest: 'srgb_tex', 'sRGB'\n"},
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
    // The file rules are those of the config in use, not those of $OCIO.
    auto const rules = [this](char const* name, char const* space) {
        return m_env.dir().write(name, ocioConfig({"lin", "raw", "srgb_tex"}, {}, fmt::format(R"(file_rules:
  - !<Rule> {{name: textures, colorspace: {}, pattern: "*", extension: tx}}
  - !<Rule> {{name: Default, colorspace: lin}}
)", space)));
    };
    m_env.ocio().set(rules("ocio.ocio", "raw"));
    EXPECT_EQ(run({"guess", "--config", rules("given.ocio", "srgb_tex"), "wood.tx", "x_raw.exr"}).out,
              "wood.tx: srgb_tex\nx_raw.exr: lin\n");
    EXPECT_EQ(Json::parse(run({"guess", "--json", "wood.tx"}).out), Json::parse(R"([{"file": "wood.tx", "colorSpace": "raw"}])"));
}

} // namespace
} // namespace verra_test
