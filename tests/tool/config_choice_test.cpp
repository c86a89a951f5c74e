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
    std::string report;
    for (std::size_t i = 1; i < lines.size() && !lines[i].empty(); ++i) {
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

TEST_F(ToolConfigChoice, ConfigThatIsNotFoundIsAWarning)
{
    std::string const missing = file("missing.ocio");
    ToolResult const result = run({"find", "srgb", "--config", missing});
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_EQ(result.out, "sRGB\n");
    EXPECT_EQ(result.err,
              "colorconfig: warning: '" + missing + "' env var not set, will use built-in color spaces.\n");
}

TEST_F(ToolConfigChoice, ConfigThatOpenImageIoRefusesIsAnError)
{
    std::string const broken = m_dir.write("broken.ocio", "ocio_profile_version: 2.1\ncolorspaces: [\n");
    ToolResult const result = run({"info", "--config", broken});
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_EQ(reportOf(result), "Using specified OCIO config: " + broken);
    EXPECT_TRUE(contains(result.out, "Colour spaces (3)\n  linear  sRGB    Rec709\n"));
    std::vector<std::string> const lines = splitLines(result.err);
    ASSERT_FALSE(lines.empty());
    EXPECT_EQ(lines[0].rfind("colorconfig: error: ", 0), 0u) << result.err;
    EXPECT_TRUE(contains(result.err, broken));
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
                          "colorconfig: error: '" + input + "' was not converted\n");
}

} // namespace
} // namespace verra_test
