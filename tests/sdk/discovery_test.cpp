// Choosing the configuration: the explicit path, the argument as a variable
// name, ocio.txt in the user's product directory and $OCIO, with the report
// of each outcome.

#include <verra_sdk/colorconfig.h>

#include "support/log_capture.h"
#include "support/module_env.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <unistd.h>

using namespace orv::verra_sdk;

namespace {

class Discovery : public ::testing::Test {
protected:
    void SetUp() override
    {
        verra_test::OcioConfigText a;
        a.colorSpaces = {"from_a"};
        verra_test::OcioConfigText b;
        b.colorSpaces = {"from_b"};
        verra_test::OcioConfigText c;
        c.colorSpaces = {"from_c"};
        configA = env.writeConfig("a/config.ocio", a);
        configB = env.writeConfig("b/config.ocio", b);
        configC = env.writeConfig("c/config.ocio", c);
        missing = env.dir().file("nowhere/missing.ocio");
    }

    static std::string load(std::string const& argument)
    {
        return ColorConfig::loadOcioConfig(orv::String(argument.c_str())).buf();
    }

    /// The configuration's own colour space now in the list (the fourth entry).
    static std::string chosen()
    {
        orv::StringVector const list = ColorConfig::colorSpaces();
        return list.size() > 3 ? list[3].buf() : "(built-ins)";
    }

    std::string ocioTxt() const { return env.productDir() + "/ocio.txt"; }

    verra_test::ModuleEnv env;
    verra_test::LogCapture log;
    std::string configA, configB, configC, missing;
};

TEST_F(Discovery, NothingFoundFallsBackToTheBuiltins)
{
    EXPECT_EQ(load(""), "No OCIO config found, will use built-in color spaces.");
    EXPECT_EQ(chosen(), "(built-ins)");
    EXPECT_TRUE(log.lines().empty());
}

TEST_F(Discovery, ExplicitFileWinsOverOcioTxtAndOcio)
{
    env.writeOcioTxt(configB);
    env.ocio().set(configC);
    EXPECT_EQ(load(configA), "Using specified OCIO config: " + configA);
    EXPECT_EQ(chosen(), "from_a");
}

TEST_F(Discovery, ExplicitFileIsReportedByItsCanonicalPath)
{
    std::filesystem::create_directory_symlink(env.dir().path() + "/a", env.dir().path() + "/link");
    EXPECT_EQ(load(env.dir().path() + "/b/../link//config.ocio"), "Using specified OCIO config: " + configA);
    EXPECT_EQ(chosen(), "from_a");
}

TEST_F(Discovery, MissingExplicitFileIsThenTriedAsAVariableName)
{
    // The second source overwrites the message of the first.
    EXPECT_EQ(load(missing), "'" + missing + "' env var not set, will use built-in color spaces.");
    EXPECT_EQ(chosen(), "(built-ins)");
}

TEST_F(Discovery, DollarAloneReportsTheMissingFileByItsNormalizedForm)
{
    EXPECT_EQ(load("$"), "The specified OCIO config file was not found: $");
    EXPECT_EQ(load("%%"), "The specified OCIO config file was not found: %%");
}

TEST_F(Discovery, ArgumentNamesAVariableInEveryNotation)
{
    verra_test::EnvGuard var("VERRA_TEST_CFG");
    var.set(configB);
    for (char const* argument : {"VERRA_TEST_CFG", "$VERRA_TEST_CFG", "%VERRA_TEST_CFG%"}) {
        EXPECT_EQ(load(argument), "Using " + configB + " according to the 'VERRA_TEST_CFG' env var.") << argument;
        EXPECT_EQ(chosen(), "from_b");
    }
}

TEST_F(Discovery, VariableNamingAMissingFileIsReportedNormalized)
{
    verra_test::EnvGuard var("VERRA_TEST_CFG");
    var.set(env.dir().path() + "/x/..//nowhere/./missing.ocio");
    EXPECT_EQ(load("$VERRA_TEST_CFG"),
              "Error: no OCIO config found at 'VERRA_TEST_CFG' env var path: " + missing);
}

TEST_F(Discovery, ArgumentVariableWinsOverOcioTxt)
{
    verra_test::EnvGuard var("VERRA_TEST_CFG");
    var.set(configA);
    env.writeOcioTxt(configB);
    EXPECT_EQ(load("%VERRA_TEST_CFG%"), "Using " + configA + " according to the 'VERRA_TEST_CFG' env var.");
}

TEST_F(Discovery, OcioTxtWithALineEndIsUsed)
{
    env.writeOcioTxt("  " + configB + "\r\n");
    env.ocio().set(configC);
    EXPECT_EQ(load(""), "Using OCIO config " + configB + " according to " + ocioTxt() + ".");
    EXPECT_EQ(chosen(), "from_b");
}

TEST_F(Discovery, OcioTxtMayStartAtTheHomeDirectory)
{
    std::string const home = env.dir().path() + "/home";
    env.dir().write("home/configs/b.ocio", verra_test::readFile(configB));
    env.writeOcioTxt("~/configs/b.ocio\n");
    EXPECT_EQ(load(""), "Using OCIO config " + home + "/configs/b.ocio according to " + ocioTxt() + ".");
}

TEST_F(Discovery, OcioTxtNamingAMissingFileIsReported)
{
    env.writeOcioTxt(env.dir().path() + "/nowhere/../nowhere/missing.ocio\n");
    EXPECT_EQ(load(""), "Error: read " + ocioTxt() + " but could not find the OCIO config it specifies: " + missing);
    EXPECT_EQ(chosen(), "(built-ins)");
}

TEST_F(Discovery, OcioWinsSilentlyOverAFailedOcioTxt)
{
    env.writeOcioTxt(missing);
    env.ocio().set(configC);
    EXPECT_EQ(load(""), "Using " + configC + " according to the 'OCIO' env var.");
    EXPECT_EQ(chosen(), "from_c");
}

TEST_F(Discovery, OcioWinsSilentlyOverAMissingExplicitFile)
{
    env.ocio().set(configC);
    EXPECT_EQ(load(missing), "Using " + configC + " according to the 'OCIO' env var.");
}

TEST_F(Discovery, OcioNamingAMissingFileIsSkippedWithoutAMessage)
{
    env.ocio().set(missing);
    EXPECT_EQ(load(""), "No OCIO config found, will use built-in color spaces.");
}

TEST_F(Discovery, TheLastFailingSourceGivesTheReport)
{
    verra_test::EnvGuard var("VERRA_TEST_CFG");
    var.set(missing);
    env.writeOcioTxt(missing + "2");
    env.ocio().set(missing + "3");
    EXPECT_EQ(load("$VERRA_TEST_CFG"),
              "Error: read " + ocioTxt() + " but could not find the OCIO config it specifies: " + missing + "2");

    std::filesystem::remove(ocioTxt());
    EXPECT_EQ(load("$VERRA_TEST_CFG"), "Error: no OCIO config found at 'VERRA_TEST_CFG' env var path: " + missing);
}

TEST_F(Discovery, OcioTxtThatIsADirectoryIsNotASource)
{
    env.dir().mkdir("xdg/verra/ocio.txt");
    EXPECT_EQ(load(""), "No OCIO config found, will use built-in color spaces.");
}

TEST_F(Discovery, UnreadableOcioTxtIsReported)
{
    if (::geteuid() == 0) {
        GTEST_SKIP() << "file permissions do not stop the superuser from reading";
    }
    std::string const txt = env.writeOcioTxt(configB);
    std::filesystem::permissions(txt, std::filesystem::perms::none);
    EXPECT_EQ(load(""), "Error: found " + txt + " but failed to open it for reading.");
}

TEST_F(Discovery, EachCallSearchesAfresh)
{
    EXPECT_EQ(load(""), "No OCIO config found, will use built-in color spaces.");
    env.writeOcioTxt(configB);
    EXPECT_EQ(load(""), "Using OCIO config " + configB + " according to " + ocioTxt() + ".");
    EXPECT_EQ(chosen(), "from_b");
    std::filesystem::remove(ocioTxt());
    EXPECT_EQ(load(""), "No OCIO config found, will use built-in color spaces.");
    EXPECT_EQ(chosen(), "(built-ins)");
}

} // namespace
