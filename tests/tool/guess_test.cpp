// `guess`: the colour space of files from their names, as the module's
// parseColorSpace tells it.

#include "tool_test.h"

#include <verra_sdk/colorconfig.h>

namespace verra_test {
namespace {

using ToolGuess = ToolTest;

TEST_F(ToolGuess, FallsBackOnTheExtension)
{
    EXPECT_EQ(run({"guess", "photo.PNG"}).out, "sRGB\n");
    ToolResult const result = run({"guess", "render.exr"});
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_EQ(result.out, "linear\n");
    EXPECT_EQ(result.err, "");
}

TEST_F(ToolGuess, PrefixesEachFileWhenGivenSeveral)
{
    ToolResult const result = run({"guess", "a/photo.jpg", "scan.tif", "noextension"});
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_EQ(result.out, "a/photo.jpg: sRGB\nscan.tif: linear\nnoextension: linear\n");
}

TEST_F(ToolGuess, NoFallbackFailsWhenNothingIsFound)
{
    ToolResult const result = run({"guess", "--no-fallback", "render.exr", "photo.png"});
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_EQ(result.out, "");
    EXPECT_EQ(result.err, "colorconfig: error: no colour space found for 'render.exr'\n"
                          "colorconfig: error: no colour space found for 'photo.png'\n");
}

TEST_F(ToolGuess, FindsAColourSpaceNameInTheFileName)
{
    std::string const config = writeConfig(sampleConfig());
    ToolResult const result = run({"guess", "--config", config, "--no-fallback", "plate_srgb_tex.exr"});
    EXPECT_EQ(result.exitCode, 0);

    orv::verra_sdk::ColorConfig::loadOcioConfig(orv::String(config));
    orv::String const expected = orv::verra_sdk::ColorConfig::parseColorSpace("plate_srgb_tex.exr", false);
    EXPECT_EQ(expected, "srgb_tex");
    EXPECT_EQ(result.out, std::string(expected.view()) + "\n");
}

TEST_F(ToolGuess, UsesTheFileRulesOfTheOcioVariable)
{
    OcioConfigText config = sampleConfig();
    config.fileRules = {R"(- !<Rule> {name: tiffs, colorspace: srgb_tex, pattern: "*", extension: "tif"})"};
    setChildEnv("OCIO", writeConfig(config));
    ToolResult const result = run({"guess", "--no-fallback", "scan.TIF", "render.exr"});
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_EQ(result.out, "scan.TIF: srgb_tex\n");
    EXPECT_EQ(result.err, "colorconfig: error: no colour space found for 'render.exr'\n");
}

TEST_F(ToolGuess, DoesNotOpenTheFiles)
{
    ToolResult const result = run({"guess", file("does/not/exist.png")});
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_EQ(result.out, "sRGB\n");
}

} // namespace
} // namespace verra_test
