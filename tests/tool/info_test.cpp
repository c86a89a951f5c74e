// info and the choice of configuration: the report, the catalogue as text
// and JSON, and a configuration asked for and not had, on every subcommand.

#include "tool_test.h"

#include <nlohmann/json.hpp>

namespace verra_test {
namespace {

using Json = nlohmann::json;
using ToolInfo = ToolTest;

TEST_F(ToolInfo, ShowsTheCatalogueOfTheConfigAsTextAndJson)
{
    std::string const config = sampleConfig();
    EXPECT_EQ(
        run({"info", "--config", config}),
        (Outcome{
            0,
            "Config\n  Using specified OCIO config: " + config +
                "\n\nColour spaces (7)\n  linear*   sRGB*     Rec709*   lin       raw       srgb_tex  tone\n"
                "  * built in: the module's own, listed before the config's\n\n"
                "Inactive colour spaces, accepted by name (1)\n  old\n\n"
                "Config colour spaces the list hides (1)\n  SRGB  shadowed by the built-in 'sRGB'\n\n"
                "Default display  Monitor\nDefault view     Tone\n\n"
                "Displays and their views (1)\n  Monitor  Tone, Standard, Raw\n\n"
                "Looks (1)\n  Bright\n\n"
                "Roles and their colour spaces (3)\n  color_picking  srgb_tex\n  default        lin\n"
                "  scene_linear   lin\n",
            ""}));
    Json const json = Json::parse(run({"info", "--json", "--config", config}).out);
    EXPECT_EQ(json, Json::parse(R"({"report": "Using specified OCIO config: )" + config + R"(",
        "configFile": ")" + config + R"(", "errors": [],
        "colorSpaces": ["linear", "sRGB", "Rec709", "lin", "raw", "srgb_tex", "tone"],
        "builtIns": ["linear", "sRGB", "Rec709"], "inactiveColorSpaces": ["old"],
        "hidden": [{"name": "SRGB", "reason": "shadowed by the built-in 'sRGB'"}],
        "defaultDisplay": "Monitor", "defaultView": "Tone",
        "displays": [{"name": "Monitor", "views": ["Tone", "Standard", "Raw"]}], "looks": ["Bright"],
        "roles": [{"name": "color_picking", "colorSpace": "srgb_tex"}, {"name": "default", "colorSpace": "lin"},
                  {"name": "scene_linear", "colorSpace": "lin"}]})"));
}

// --config names a file, or a variable as NAME, $NAME or %NAME%. The other
// subcommands keep the report off standard output, and print it on standard
// error with --verbose.
TEST_F(ToolInfo, ConfigIsNamedByFileOrVariable)
{
    std::string const config = sampleConfig();
    EnvGuard const variable("MY_CONFIG");
    variable.set(config);
    for (std::string const& option : Words{config, "MY_CONFIG", "$MY_CONFIG", "%MY_CONFIG%"}) {
        std::string const report =
            option == config ? "Using specified OCIO config: " + config
                             : "Using " + config + " according to the 'MY_CONFIG' env var.";
        EXPECT_EQ(run({"find", "lin", "--verbose", "--config", option}),
                  (Outcome{0, "lin\n", "colorconfig: " + report + "\n"}));
    }
}

TEST_F(ToolInfo, AConfigAskedForAndNotHadIsAnErrorOnEverySubcommand)
{
    std::string const missingLut = sampleConfig(
        "  - !<ColorSpace> {name: film, to_scene_reference: !<FileTransform> {src: gone.cube}}\n");
    std::string const missing = "/nonexistent/config.ocio";
    std::pair<std::string, std::string> const cases[] = {
        // --config, a part of the error
        {missing, "the config named by --config '" + missing +
                      "' was not found; the module reports: '" + missing +
                      "' env var not set, will use built-in color spaces."},
        {m_env.dir().write("broken.ocio", "ocio_profile_version: 2.1\ncolorspaces: [\n"),
         "Error: Loading the OCIO"},
        {m_env.dir().write("new.ocio", "ocio_profile_version: 9\n"), "is version 9.0"},
        {missingLut, "gone.cube"},
    };
    for (auto const& [config, error] : cases) {
        for (Words words : {Words{"find", "linear"}, Words{"guess", "a.png"},
                            Words{"color", "--from", "linear", "--to", "sRGB", "1", "1", "1"},
                            Words{"convert", "--from", "linear", "--to", "sRGB", "a.exr", "b.exr"},
                            Words{"preview", "a.exr", "b.png"}}) {
            words.insert(words.end(), {"--config", config});
            Outcome const result = run(words);
            EXPECT_TRUE(result.code == 1 && result.out.empty() &&
                        Strutil::contains(result.err, error) &&
                        Strutil::starts_with(result.err, "colorconfig: error: "))
                << words[0] << " " << config << ": " << result.code << result.err;
        }
        // info still runs, and shows what is wrong at the top and in JSON.
        Outcome const text = run({"info", "--config", config});
        EXPECT_TRUE(text.code == 1 && Strutil::starts_with(text.out, "Errors\n  ")) << text.out;
        Outcome const json = run({"info", "--json", "--config", config});
        Words const errors = Json::parse(json.out)["errors"];
        ASSERT_FALSE(errors.empty());
        std::string const prefix = "colorconfig: error: ";
        EXPECT_EQ(json.err, prefix + Strutil::join(errors, "\n" + prefix) + "\n");
    }
}

} // namespace
} // namespace verra_test
