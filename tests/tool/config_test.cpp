// A configuration set and not had, and one that names a missing file.

#include "tool_test.h"

#include <nlohmann/json.hpp>

namespace verra_test {
namespace {

using Json = nlohmann::json;
using ToolConfig = ToolTest;

TEST_F(ToolConfig, AConfigSetAndNotHadIsAnErrorThatJsonAndInfoStillReport)
{
    std::string const error = inDir("the config set by --config '$D/none.ocio' was not found");
    std::string const said = "colorconfig: error: " + error + "\n";
    EXPECT_EQ(run({"find", "--config", file("none.ocio"), "linear"}), Outcome(1, "", said));
    EXPECT_EQ(run({"find", "--json", "--config", file("none.ocio"), "linear"}),
              Outcome(1, Json{{"errors", {error}}, {"results", Json::array()}}.dump(2) + "\n", said));
    // The file subcommands print their summary (errors, converted, skipped, failed, missing), with the config's
    // error or a name's.
    for (auto const& [config, message] :
         {std::pair{file("none.ocio"), error}, {sampleConfig(), std::string("unknown colour space 'nope'")}}) {
        auto const [code, out, err] =
            run({"convert", "--json", "--config", config, "--from", "nope", "--to", "lin", "a", "b"});
        Json const json = Json::parse(out);
        EXPECT_THAT(std::tuple(code, json["errors"], json["converted"], json["failed"], json.size()),
                    FieldsAre(1, ElementsAre(StartsWith(message)), IsEmpty(), IsEmpty(), 5u));
    }
    EXPECT_THAT(
        run({"info", "--config", file("none.ocio")}),
        FieldsAre(1, AllOf(StartsWith("Errors\n  " + error + "\n\nConfig\n"), HasSubstr("\nRoles and their")), said));
}

TEST_F(ToolConfig, AMissingLutIsAWarningAndFailsOnlyTheConversionsThatNeedIt)
{
    std::string const config =
        sampleConfig("  - !<ColorSpace> {name: film, to_scene_reference: !<FileTransform> {src: gone.cube}}\n");
    std::string const missing = inDir("The specified file reference 'gone.cube' could not be located. The following "
                                      "attempts were made: '$D/gone.cube'.");
    EXPECT_THAT(run({"info", "--config", config}),
                FieldsAre(0,
                          AllOf(StartsWith("Warnings\n  The specified file reference 'gone.cube'"),
                                HasSubstr("'.\n\nConfig\n  Using specified OCIO config: ")),
                          ""));
    EXPECT_THAT(Json::parse(std::get<1>(run({"info", "--json", "--config", config})))["warnings"],
                ElementsAre(missing));
    EXPECT_THAT(run({"check", "--config", config}),
                FieldsAre(1,
                          AllOf(HasSubstr("\n  error: The specified file reference 'gone.cube'"), EndsWith("broken\n")),
                          "colorconfig: error: " + missing + "\n"));
    writeNoise(file("in.png"), 8, 3, OIIO::TypeDesc::UINT8);
    Words convert{"convert", "--config", config, "--from", "srgb_tex", "--to", "lin", file("in.png"), file("a.png")};
    EXPECT_EQ(run(convert), Outcome(0, file("in.png") + " -> " + file("a.png") + "\n", ""));
    convert[4] = "lin";
    convert[6] = "film";
    EXPECT_EQ(run(convert),
              Outcome(1, "", "colorconfig: error: cannot convert from 'lin' to 'film': " + missing + "\n"));
}

TEST_F(ToolConfig, ContextOfCheckAndInfoSetsTheFilesTheyFind)
{
    // The space "shot" reads $SHOT.spi1d; only a.spi1d and b.spi1d exist.
    std::string const config = shotConfig();
    // With a variable naming no file, the space fails; with SHOT=a it works (OpenColorIO's validation refuses a
    // context variable whatever its value).
    std::string const check = "\"$1\" check --config \"$2\" ";
    EXPECT_THAT(shell(check + "--context SHOT=c", {config}), FieldsAre(1, _, HasSubstr("c.spi1d")));
    EXPECT_THAT(shell(check + "--context SHOT=a", {config}),
                FieldsAre(1, HasSubstr("Colour spaces that fail: 0 of 7\n"), ""));
    // info lists the files missing under the run's context.
    std::string const info = "\"$1\" info --config \"$2\" ";
    EXPECT_THAT(shell(info + "--context SHOT=c", {config}), FieldsAre(0, HasSubstr("/c.spi1d'"), ""));
    EXPECT_THAT(shell(info + "--context SHOT=a", {config}), FieldsAre(0, Not(HasSubstr("spi1d")), ""));
}

} // namespace
} // namespace verra_test
