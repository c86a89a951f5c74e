// info and the choice of configuration: the report, the catalogue as text
// and JSON, and a configuration asked for and not had, on every subcommand.

#include "tool_harness.h"

#include <verra_sdk/colorconfig.h>

#include <OpenImageIO/strutil.h>

#include <nlohmann/json.hpp>

#include <filesystem>

namespace verra_test {
namespace {

namespace Strutil = OIIO::Strutil;
using Json = nlohmann::json;
using ToolInfo = ToolTest;

TEST_F(ToolInfo, WithoutAnyConfigShowsTheBuiltIns)
{
    Outcome const text = run({"info", "--verbose"});
    EXPECT_EQ(text.code, 0);
    EXPECT_EQ(text.err, "");
    EXPECT_EQ(text.out, "Config\n"
                        "  No OCIO config found, will use built-in color spaces.\n"
                        "  In use: the built-in colour spaces only (linear, sRGB, Rec709).\n\n"
                        "Colour spaces (3)\n  linear  sRGB    Rec709\n\n"
                        "Default display  (none)\nDefault view     (none)\n\n"
                        "Displays and their views (0)\n  (none)\n\nLooks (0)\n  (none)\n\nRoles (0)\n  (none)\n");
    Json const json = Json::parse(run({"info", "--json"}).out);
    EXPECT_EQ(json, Json::parse(R"({"report": "No OCIO config found, will use built-in color spaces.",
        "configFile": "", "errors": [], "colorSpaces": ["linear", "sRGB", "Rec709"], "defaultDisplay": "",
        "defaultView": "", "displays": [], "looks": [], "roles": []})"));
}

TEST_F(ToolInfo, ShowsTheCatalogueOfTheConfigAsTextAndJson)
{
    std::string const config = sampleConfig();
    Outcome const text = run({"info", "--config", config});
    EXPECT_EQ(text.code, 0);
    EXPECT_EQ(text.out, "Config\n  Using specified OCIO config: " + config +
                            "\n\nColour spaces (6)\n  linear    sRGB      Rec709    lin       raw       srgb_tex\n\n"
                            "Default display  Monitor\nDefault view     Standard\n\n"
                            "Displays and their views (2)\n  Monitor    Standard, Raw\n  Projector  Film\n\n"
                            "Looks (1)\n  Warm\n\nRoles (2)\n  default       scene_linear\n");
    Json const json = Json::parse(run({"info", "--json", "--config", config}).out);
    EXPECT_EQ(json, Json::parse(R"({"report": "Using specified OCIO config: )" + config + R"(",
        "configFile": ")" + config + R"(", "errors": [],
        "colorSpaces": ["linear", "sRGB", "Rec709", "lin", "raw", "srgb_tex"],
        "defaultDisplay": "Monitor", "defaultView": "Standard",
        "displays": [{"name": "Monitor", "views": ["Standard", "Raw"]}, {"name": "Projector", "views": ["Film"]}],
        "looks": ["Warm"], "roles": ["default", "scene_linear"]})"));
}

TEST_F(ToolInfo, OddAndLongNamesStayValidJsonAndFitEightyColumns)
{
    std::string yaml = "ocio_profile_version: 2.1\nroles: {default: raw}\ndisplays: {}\ncolorspaces:\n";
    for (std::string const& name : std::vector<std::string>{"raw", "quote\"back\\slash", "caf\xc3\xa9", "bad\xff", "a_very_long_name_number_",
                                    "another_quite_long_colour_space_name", std::string(100, 'L')}) {
        yaml += "  - !<ColorSpace> {name: \"" + Strutil::escape_chars(name) + "\"}\n";
    }
    std::string const config = m_env.dir().write("odd.ocio", yaml);
    std::vector<std::string> const listed = Json::parse(run({"info", "--json", "--config", config}).out)["colorSpaces"];
    EXPECT_EQ(std::vector<std::string>(listed.begin() + 4, listed.begin() + 7),
              (std::vector<std::string>{"quote\"back\\slash", "caf\xc3\xa9", "bad\xef\xbf\xbd"}));
    Outcome const text = run({"info", "--config", config});
    EXPECT_TRUE(Strutil::contains(text.out, "bad\xff"));
    for (auto const& line : Strutil::splits(text.out, "\n")) {
        EXPECT_TRUE(line.size() <= 79 || line == "  " + std::string(100, 'L')) << line;
    }
}

TEST_F(ToolInfo, ConfigIsChosenByOptionOcioTxtOrVariable)
{
    std::string const config = sampleConfig();
    std::string const other = m_env.dir().write("other.ocio", readFile(config));
    EnvGuard const variable("MY_CONFIG");
    variable.set(other);
    struct Case {
        std::string ocioTxt;
        std::vector<std::string> option;
        std::string report;
    };
    Case const cases[] = {
        {config, {}, "Using OCIO config " + config + " according to " + m_env.productDir() + "/ocio.txt."},
        {config, {"--config", other}, "Using specified OCIO config: " + other},
        {"", {"--config", "MY_CONFIG"}, "Using " + other + " according to the 'MY_CONFIG' env var."},
        {"", {"--config", "$MY_CONFIG"}, "Using " + other + " according to the 'MY_CONFIG' env var."},
        {"", {"--config", "%MY_CONFIG%"}, "Using " + other + " according to the 'MY_CONFIG' env var."},
    };
    for (Case const& c : cases) {
        std::filesystem::remove(m_env.productDir() + "/ocio.txt");
        if (!c.ocioTxt.empty()) {
            m_env.writeOcioTxt(c.ocioTxt);
        }
        std::vector<std::string> words{"info", "--json"};
        words.insert(words.end(), c.option.begin(), c.option.end());
        Outcome const info = run(words);
        EXPECT_EQ(info.code, 0) << info.err;
        EXPECT_EQ(Json::parse(info.out)["report"], c.report);
        // The other subcommands keep the report off standard output, and
        // print it on standard error with --verbose.
        words = {"find", "lin", "--verbose"};
        words.insert(words.end(), c.option.begin(), c.option.end());
        Outcome const find = run(words);
        EXPECT_EQ(find.out, "lin\n");
        EXPECT_EQ(find.err, "colorconfig: " + c.report + "\n");
    }
}

TEST_F(ToolInfo, AConfigAskedForAndNotHadIsAnErrorOnEverySubcommand)
{
    std::string const missingLut = sampleConfig("  - !<ColorSpace>\n    name: film\n"
                                                "    to_scene_reference: !<FileTransform> {src: gone.cube}\n");
    struct Case {
        std::string config;
        std::string error;
    };
    Case const cases[] = {
        {"/nonexistent/config.ocio", "the config named by --config '/nonexistent/config.ocio' was not found; the "
                                     "module reports: '/nonexistent/config.ocio' env var not set, will use built-in color spaces."},
        {m_env.dir().write("broken.ocio", "ocio_profile_version: 2.1\ncolorspaces: [\n"), "Error: Loading the OCIO"},
        {m_env.dir().write("new.ocio", "ocio_profile_version: 9\n"), "is version 9.0"},
        {missingLut, "gone.cube"},
    };
    for (Case const& c : cases) {
        for (std::vector<std::string> words : {std::vector<std::string>{"find", "linear"},
                                               {"guess", "a.png"},
                                               {"color", "--from", "linear", "--to", "sRGB", "1", "1", "1"},
                                               {"convert", "--from", "linear", "--to", "sRGB", "a.exr", "b.exr"},
                                               {"preview", "a.exr", "b.png"}}) {
            words.insert(words.end(), {"--config", c.config});
            Outcome const result = run(words);
            EXPECT_EQ(result.code, 1) << words[0] << " " << c.config;
            EXPECT_EQ(result.out, "") << words[0];
            EXPECT_TRUE(Strutil::starts_with(result.err, "colorconfig: error: ")) << result.err;
            EXPECT_TRUE(Strutil::contains(result.err, c.error)) << result.err;
        }
        // info still runs, and shows what is wrong at the top and in JSON.
        Outcome const text = run({"info", "--config", c.config});
        EXPECT_EQ(text.code, 1);
        EXPECT_TRUE(Strutil::starts_with(text.out, "Errors\n  ")) << text.out;
        Outcome const json = run({"info", "--json", "--config", c.config});
        std::vector<std::string> const errors = Json::parse(json.out)["errors"];
        ASSERT_FALSE(errors.empty());
        EXPECT_EQ(json.err, "colorconfig: error: " + Strutil::join(errors, "\ncolorconfig: error: ") + "\n");
    }
}

} // namespace
} // namespace verra_test
