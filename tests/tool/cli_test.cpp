// The command line: usage errors, help, and the subcommands that print
// names and colours (color, find, guess), run in this process.

#include "tool_harness.h"

#include <verra_sdk/colorconfig.h>

#include <OpenImageIO/strutil.h>

#include <fmt/format.h>

namespace verra_test {
namespace {

namespace sdk = orv::verra_sdk;
namespace Strutil = OIIO::Strutil;
using ToolCli = ToolTest;
using Words = std::vector<std::string>;

TEST_F(ToolCli, UsageErrorsExitWithTwoAndSayWhatIsWrong)
{
    struct Case {
        Words words;
        char const* error;
        char const* hint;
    };
    Case const cases[] = {
        {{}, "A subcommand is required", "colorconfig"},
        {{"bogus"}, "unknown subcommand 'bogus'", "colorconfig"},
        {{"--bogus", "info"}, "--bogus", "colorconfig"},
        {{"info", "--bogus"}, "--bogus", "colorconfig info"},
        {{"color", "--to", "sRGB", "1", "2", "3", "--from"}, "--from", "colorconfig color"},
        {{"color", "--to", "sRGB", "1", "2", "3"}, "--from is required", "colorconfig color"},
        {{"color", "--from", "a", "--from", "b", "--to", "c", "1", "2", "3"}, "--from", "colorconfig color"},
        {{"color", "--from", "linear", "--to", "sRGB", "1", "2"}, "At least 3", "colorconfig color"},
        {{"color", "--from", "linear", "--to", "sRGB", "1", "2", "3", "4", "5"}, "5", "colorconfig color"},
        {{"color", "--from", "linear", "--to", "sRGB", "1", "x", "3"}, "'x' is not a number", "colorconfig color"},
        {{"convert", "--from", "linear", "--to", "sRGB", "in.png"},
         "'convert' needs IN and OUT, or --out-dir DIR and one or more IN", "colorconfig convert"},
        {{"preview", "in.exr"}, "IN_OUT", "colorconfig preview"},
        {{"find"}, "NAME is required", "colorconfig find"},
        {{"help", "bogus"}, "'help' takes one subcommand name, e.g. 'colorconfig help convert'", "colorconfig"},
    };
    for (Case const& c : cases) {
        Outcome const result = run(c.words);
        std::string const all = Strutil::join(c.words, " ");
        EXPECT_EQ(result.code, 2) << all;
        EXPECT_EQ(result.out, "") << all;
        EXPECT_TRUE(Strutil::starts_with(result.err, "colorconfig: error: ")) << all << "\n" << result.err;
        EXPECT_TRUE(Strutil::contains(result.err, c.error)) << all << "\n" << result.err;
        EXPECT_TRUE(Strutil::ends_with(result.err, "\nRun '" + std::string(c.hint) + " --help' for more.\n"))
            << all << "\n" << result.err;
    }
}

TEST_F(ToolCli, HelpListsSubcommandsOptionsAndExitCodesInEightyColumns)
{
    Words const names{"info", "find", "guess", "color", "convert", "preview"};
    for (Words const& words : {Words{"--help"}, Words{"-h"}, Words{"help"}, Words{"convert", "--config", "x", "-h"},
                               Words{"help", "convert"}, Words{"color", "--help"}, Words{"find", "--help"},
                               Words{"guess", "--help"}, Words{"info", "--help"}, Words{"preview", "--help"}}) {
        Outcome const help = run(words);
        std::string const all = Strutil::join(words, " ");
        EXPECT_EQ(help.code, 0) << all;
        bool const program = words.size() == 1;
        for (std::string const& part : program ? names : Words{"Usage: colorconfig " + words[words[0] == "help"], "--config PATH", "-v,--verbose"}) {
            EXPECT_TRUE(Strutil::contains(help.out, program ? "\n  " + part + " " : part)) << all << ": " << part;
        }
        EXPECT_TRUE(Strutil::contains(help.out, "\nExit status:\n  0  Success.\n  1  A conversion")) << all;
        for (auto const& line : Strutil::splits(help.out, "\n")) {
            EXPECT_LE(line.size(), 79u) << all << ": " << line;
        }
    }
    EXPECT_EQ(run({"help", "convert"}).out, run({"convert", "--help"}).out);
    EXPECT_TRUE(Strutil::contains(run({"convert", "--help"}).out, "--out-dir DIR"));
    EXPECT_EQ(run({"--version"}).out, "colorconfig " VERRA_VERSION "\n");
    // After "--", --help is a name like any other.
    EXPECT_TRUE(Strutil::starts_with(run({"find", "--", "--help"}).err, "colorconfig: error: unknown colour space '--help'"));
}

TEST_F(ToolCli, ColorPrintsWhatTheModuleComputesWithSeventeenDigits)
{
    std::string const config = sampleConfig();
    struct Case {
        char const* from;
        char const* to;
        Words values;
        char const* route;
    };
    Case const cases[] = {
        {"linear", "sRGB", {"0.5", "0.25", "1"}, "built-in curve"},
        {"LINEAR ", " rec709", {"0.18", "-0.5", "2", "0.3"}, "built-in curve"},
        {"sRGB", "linear", {"nan", "inf", "-inf"}, "built-in curve"},
        {"sRGB", "sRGB", {"0.1", "0.2", "0.3", "0.4"}, "same"},
        {"srgb_tex", "lin", {"0.5", "-0.25", "1e-3"}, "processor"},
    };
    for (Case const& c : cases) {
        Words words{"color", "--config", config, "--verbose", "--from", c.from, "--to", c.to};
        words.insert(words.end(), c.values.begin(), c.values.end());
        Outcome const result = run(words);
        ASSERT_EQ(result.code, 0) << c.from << result.err;
        double v[4] = {0, 0, 0, 1};
        for (std::size_t i = 0; i < c.values.size(); ++i) {
            v[i] = std::strtod(c.values[i].c_str(), nullptr);
        }
        sdk::ColorConfig::loadOcioConfig(orv::String(config.c_str()));
        orv::String const from = sdk::ColorConfig::findColorSpace(c.from);
        orv::String const to = sdk::ColorConfig::findColorSpace(c.to);
        auto const expected = sdk::ColorConfig::transform({v[0], v[1], v[2], v[3]}, from, to);
        std::string line = fmt::format("{:.17g} {:.17g} {:.17g}", expected.r, expected.g, expected.b);
        line += c.values.size() == 4 ? fmt::format(" {:.17g}", expected.a) : std::string();
        EXPECT_EQ(result.out, line + "\n") << c.from;
        EXPECT_EQ(result.err, fmt::format("colorconfig: Using specified OCIO config: {}\ncolorconfig: route from "
                                          "'{}' to '{}': {}\n",
                                          config, from.view(), to.view(), c.route));
    }
    Outcome const alpha = run({"color", "--from", "linear", "--to", "sRGB", "0", "0", "0", "0.123456789"});
    EXPECT_EQ(alpha.out, "0 0 0 0.123456789\n");
    Outcome const none = run({"color", "--from", "sRGB", "--to", "Rec709", "0.5", "0.5", "0.5"});
    EXPECT_EQ(none.code, 1);
    EXPECT_EQ(none.out, "");
    EXPECT_EQ(none.err, "colorconfig: error: cannot convert from 'sRGB' to 'Rec709' with this config\n");
}

TEST_F(ToolCli, FindPrintsListedNamesAndSuggestsCloseOnes)
{
    std::string const config = sampleConfig();
    struct Case {
        Words names;
        int code;
        char const* out;
        char const* err;
    };
    Case const cases[] = {
        {{" SRGB "}, 0, "sRGB\n", ""},
        {{"LIN", "srgb_TEX"}, 0, "LIN: lin\nsrgb_TEX: srgb_tex\n", ""},
        {{"srgb_te"}, 1, "", "unknown colour space 'srgb_te'; closest: 'srgb_tex', 'sRGB'\n"},
        {{"tex"}, 1, "", "unknown colour space 'tex'; closest: 'srgb_tex'\n"},
        {{"rawr", "lin"}, 1, "lin: lin\n", "unknown colour space 'rawr'; closest: 'raw'\n"},
        {{"zzzzzzzz"}, 1, "", "unknown colour space 'zzzzzzzz' ('colorconfig info' lists them all)\n"},
        {{""}, 1, "", "unknown colour space '' ('colorconfig info' lists them all)\n"},
    };
    for (Case const& c : cases) {
        Words words{"find", "--config", config};
        words.insert(words.end(), c.names.begin(), c.names.end());
        Outcome const result = run(words);
        EXPECT_EQ(result.code, c.code) << c.names[0];
        EXPECT_EQ(result.out, c.out) << c.names[0];
        EXPECT_EQ(result.err, *c.err ? "colorconfig: error: " + std::string(c.err) : "") << c.names[0];
    }
}

TEST_F(ToolCli, GuessNamesTheSpaceOfEachFileWithoutOpeningIt)
{
    Outcome const several = run({"guess", "/no/such/wood.png", "plate_ACEScg.exr", "scan.dpx"});
    EXPECT_EQ(several.code, 0);
    EXPECT_EQ(several.out, "/no/such/wood.png: sRGB\nplate_ACEScg.exr: linear\nscan.dpx: linear\n");
    EXPECT_EQ(run({"guess", "shot_rec709_v2.exr"}).out, "Rec709\n");
    Outcome const none = run({"guess", "--no-fallback", "render.exr", "texture_srgb.png"});
    EXPECT_EQ(none.code, 1);
    EXPECT_EQ(none.out, "texture_srgb.png: sRGB\n");
    EXPECT_EQ(none.err, "colorconfig: error: no colour space found for 'render.exr'\n");
}

} // namespace
} // namespace verra_test
