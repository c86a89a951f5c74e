#include <orv/os.h>

#include "support/env_guard.h"
#include "support/temp_dir.h"

#include <gtest/gtest.h>

#include <pwd.h>
#include <unistd.h>

#include <filesystem>
#include <string>

namespace {

using orv::String;

TEST(Os, GetEnvReturnsTheValueOrEmpty)
{
    verra_test::EnvGuard const guard("VERRA_TEST_VARIABLE");
    guard.set("/configs/studio.ocio");
    EXPECT_EQ(orv::os::getEnv(String("VERRA_TEST_VARIABLE")).view(), "/configs/studio.ocio");
    guard.set("");
    EXPECT_TRUE(orv::os::getEnv(String("VERRA_TEST_VARIABLE")).isEmpty());
    guard.unset();
    EXPECT_TRUE(orv::os::getEnv(String("VERRA_TEST_VARIABLE")).isEmpty());
}

TEST(Os, GetEnvRejectsNamesThatCannotBeSet)
{
    verra_test::EnvGuard const guard("VERRA_TEST_VARIABLE");
    guard.set("A=B");
    // The C library would match "VERRA_TEST_VARIABLE=A" against the entry
    // "VERRA_TEST_VARIABLE=A=B" and answer "B".
    EXPECT_TRUE(orv::os::getEnv(String("VERRA_TEST_VARIABLE=A")).isEmpty());
    EXPECT_TRUE(orv::os::getEnv(String()).isEmpty());
}

class OsUserDir : public testing::Test {
protected:
    void SetUp() override
    {
        m_home.set(m_tmp.path());
        m_config.unset();
        m_data.unset();
    }

    verra_test::TempDir const m_tmp;
    verra_test::EnvGuard const m_home{"HOME"};
    verra_test::EnvGuard const m_config{"XDG_CONFIG_HOME"};
    verra_test::EnvGuard const m_data{"XDG_DATA_HOME"};
};

TEST_F(OsUserDir, FallsBackToHomeAndCreatesNothing)
{
    EXPECT_EQ(orv::fs::verraUserDir(true).view(), m_tmp.path() + "/.config/verra");
    EXPECT_EQ(orv::fs::verraUserDir(false).view(), m_tmp.path() + "/.local/share/verra");
    m_config.set("");
    EXPECT_EQ(orv::fs::verraUserDir(true).view(), m_tmp.path() + "/.config/verra");
    EXPECT_TRUE(std::filesystem::is_empty(m_tmp.path()));
}

TEST_F(OsUserDir, FollowsXdgVariables)
{
    m_config.set("/xdg/config/");
    m_data.set("/xdg/data");
    EXPECT_EQ(orv::fs::verraUserDir(true).view(), "/xdg/config/verra");
    EXPECT_EQ(orv::fs::verraUserDir(false).view(), "/xdg/data/verra");
}

TEST_F(OsUserDir, UsesThePasswordDatabaseWithoutHome)
{
    m_home.unset();
    passwd const* const entry = ::getpwuid(::getuid());
    if (!entry || !entry->pw_dir || !*entry->pw_dir) {
        GTEST_SKIP() << "no password entry for this user";
    }
    std::string home = entry->pw_dir;
    while (home.size() > 1 && home.back() == '/') {
        home.pop_back();
    }
    if (home == "/") {
        home.clear();
    }
    EXPECT_EQ(orv::fs::verraUserDir(true).view(), home + "/.config/verra");
}

} // namespace
