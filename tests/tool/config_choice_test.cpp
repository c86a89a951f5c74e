// How the program chooses its config: --config in its three forms, ocio.txt,
// $OCIO, the built-in colour spaces, and what it says about each on which
// stream.

#include "test_images.h"
#include "tool_test.h"

namespace verra_test {
namespace {

using ToolConfigChoice = ToolTest;

/// The report line of `info`'s output, with a wrapped report joined again.
std::string reportOf(ToolResult const& result)
{
    std::vector<std::string> const lines = splitLines(result.out);
    std::size_t i = 0;
    while (i < lines.size() && lines[i] != "Config") {
        ++i;
    }
    std::string report;
    for (++i; i < lines.size() && !lines[i].empty() && lines[i].rfind("  In use:", 0) != 0; ++i) {
        report += (report.empty() ? "" : " ") + lines[i].substr(2);
    }
    return report;
}

TEST_F(ToolConfigChoice, OcioTxtIsHonouredWithoutConfigOption)
{
    std::string const config = writeConfig(sampleConfig());
    std::string const txt = m_dir.write("config-home/verra/ocio.txt", config + "\n");
    ToolResult const result = run({"info"});
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_EQ(reportOf(result), "Using OCIO config " + config + " according to " + txt + ".");
    EXPECT_TRUE(contains(result.out, "srgb_tex"));
}

TEST_F(ToolConfigChoice, OcioVariableIsHonouredWithoutConfigOption)
{
    std::string const config = writeConfig(sampleConfig());
    setChildEnv("OCIO", config);
    ToolResult const result = run({"info"});
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_EQ(reportOf(result), "Using " + config + " according to the 'OCIO' env var.");
}

TEST_F(ToolConfigChoice, ConfigOptionWinsOverOcioTxtAndVariable)
{
    std::string const chosen = writeConfig(sampleConfig(), "chosen.ocio");
    OcioConfigText other;
    other.colorSpaces = {"other"};
    std::string const ignored = writeConfig(other, "ignored.ocio");
    m_dir.write("config-home/verra/ocio.txt", ignored);
    setChildEnv("OCIO", ignored);
    ToolResult const result = run({"info", "--config", chosen});
    EXPECT_EQ(reportOf(result), "Using specified OCIO config: " + chosen);
    EXPECT_FALSE(contains(result.out, "other"));
}

TEST_F(ToolConfigChoice, ConfigOptionNamesAVariableInEachForm)
{
    std::string const config = writeConfig(sampleConfig());
    setChildEnv("MY_CONFIG", config);
    for (std::string const form : {"MY_CONFIG", "$MY_CONFIG", "%MY_CONFIG%"}) {
        ToolResult const result = run({"info", "--config=" + form});
        EXPECT_EQ(result.exitCode, 0) << form;
        EXPECT_EQ(reportOf(result), "Using " + config + " according to the 'MY_CONFIG' env var.") << form;
    }
}

TEST_F(ToolConfigChoice, OtherSubcommandsKeepTheReportOffStandardOutput)
{
    std::string const config = writeConfig(sampleConfig());
    ToolResult const result = run({"find", "srgb_tex", "--config", config});
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_EQ(result.out, "srgb_tex\n");
    EXPECT_EQ(result.err, "");
}

TEST_F(ToolConfigChoice, VerbosePrintsTheReportOnStandardError)
{
    std::string const config = writeConfig(sampleConfig());
    ToolResult const withConfig = run({"find", "srgb_tex", "--config", config, "-v"});
    EXPECT_EQ(withConfig.out, "srgb_tex\n");
    EXPECT_EQ(withConfig.err, "colorconfig: Using specified OCIO config: " + config + "\n");
    ToolResult const builtIn = run({"find", "--verbose", "srgb"});
    EXPECT_EQ(builtIn.out, "sRGB\n");
    EXPECT_EQ(builtIn.err, "colorconfig: No OCIO config found, will use built-in color spaces.\n");
}

TEST_F(ToolConfigChoice, ConfigThatIsNotFoundIsAnError)
{
    // Even with ocio.txt and $OCIO to fall back on: the config asked for is
    // the one that counts.
    std::string const missing = file("missing.ocio");
    std::string const other = writeConfig(sampleConfig());
    std::string const txt = m_dir.write("config-home/verra/ocio.txt", other + "\n");
    ToolResult const result = run({"find", "srgb", "--config", missing});
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_EQ(result.out, "");
    std::string const error = "colorconfig: error: the config named by --config '" + missing +
                              "' was not found; the module reports: Using OCIO config " + other + " according to " +
                              txt + ".\n";
    EXPECT_EQ(result.err, error);
    ToolResult const info = run({"info", "--config", missing});
    EXPECT_EQ(info.exitCode, 1);
    EXPECT_EQ(info.err, error);
}

TEST_F(ToolConfigChoice, ConfigThatOpenImageIoRefusesIsAnError)
{
    std::string const broken = m_dir.write("broken.ocio", "ocio_profile_version: 2.1\ncolorspaces: [\n");
    ToolResult const result = run({"info", "--config", broken});
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_EQ(reportOf(result), "Using specified OCIO config: " + broken);
    EXPECT_TRUE(contains(result.out, "Errors\n  Error reading OCIO config"));
    EXPECT_TRUE(contains(result.out, "In use: the built-in colour spaces only"));
    EXPECT_TRUE(contains(result.out, "Colour spaces (3)\n  linear  sRGB    Rec709\n"));
    EXPECT_EQ(run({"find", "srgb", "--config", broken}).exitCode, 1);
    std::vector<std::string> const lines = splitLines(result.err);
    ASSERT_FALSE(lines.empty());
    EXPECT_EQ(lines[0].rfind("colorconfig: error: ", 0), 0u) << result.err;
    EXPECT_TRUE(contains(result.err, broken));
}

TEST_F(ToolConfigChoice, MissingLutFilesAreNamedOnEverySubcommand)
{
    std::string const config = m_dir.write(
        "luts.ocio", "ocio_profile_version: 2.1\nsearch_path: luts\nroles:\n  default: raw\ncolorspaces:\n"
                     "  - !<ColorSpace>\n    name: raw\n  - !<ColorSpace>\n    name: film\n"
                     "    from_scene_reference: !<FileTransform> {src: gone.spi1d}\n");
    std::string const error = "colorconfig: error: The specified file reference 'gone.spi1d' could not be located. "
                              "The following attempts were made: '" + m_dir.path() + "/luts/gone.spi1d'.\n";
    for (std::vector<std::string> const& args :
         {std::vector<std::string>{"info"}, {"find", "raw"}, {"guess", "a.exr"}, {"color", "--from", "raw", "--to",
                                                                                   "raw", "1", "1", "1"}}) {
        std::vector<std::string> words = args;
        words.insert(words.end(), {"--config", config});
        ToolResult const result = run(words);
        EXPECT_EQ(result.exitCode, 1) << args[0];
        EXPECT_EQ(result.err, error) << args[0];
    }
}

TEST_F(ToolConfigChoice, ModuleErrorLinesReachStandardError)
{
    // Without a config, OpenImageIO has no processor from sRGB to Rec709:
    // the module's image transform logs its own message, which the program
    // shows as one of its errors.
    std::string const input = file("in.png");
    writeBytes(input, 2, 2, 3, byteRamp(2, 2, 3));
    ToolResult const result = run({"convert", "--from", "sRGB", "--to", "Rec709", input, file("out.png")});
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_EQ(result.out, "");
    EXPECT_EQ(result.err, "colorconfig: error: Cannot convert from 'sRGB' to 'Rec709'.\n"
                          "colorconfig: error: '" + input + "' was not converted: the conversion failed\n");
}

} // namespace
} // namespace verra_test
