#pragma once
// What every test may need: environment variables restored, a temporary
// folder, and the lines written to orv::logError.

#include <orv/log.h>

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <optional>
#include <sstream>
#include <string>
#include <vector>

namespace verra_test {

/// Remembers the variable's value (or that it was unset); restores it on destruction.
class EnvGuard {
public:
    explicit EnvGuard(std::string name) : m_name(std::move(name))
    {
        if (char const* value = std::getenv(m_name.c_str())) {
            m_saved = value;
        }
    }
    ~EnvGuard() { m_saved ? set(*m_saved) : unset(); }
    EnvGuard(EnvGuard const&) = delete;
    EnvGuard& operator=(EnvGuard const&) = delete;

    void set(std::string const& value) const { ::setenv(m_name.c_str(), value.c_str(), 1); }
    void unset() const { ::unsetenv(m_name.c_str()); }
    /// Sets the variable, or unsets it for null.
    void put(char const* value) const { value ? set(value) : unset(); }

private:
    std::string m_name;
    std::optional<std::string> m_saved;
};

/// The whole content of the file at `path`, or "" when it cannot be read.
inline std::string readFile(std::string const& path)
{
    std::ostringstream content;
    content << std::ifstream(path, std::ios::binary).rdbuf();
    return content.str();
}

/// A fresh folder under the system's temporary folder, removed with all it
/// holds on destruction.
class TempDir {
public:
    TempDir()
    {
        std::string made = std::filesystem::temp_directory_path().string() + "/verra-test-XXXXXX";
        EXPECT_NE(::mkdtemp(made.data()), nullptr) << made;
        m_path = std::filesystem::canonical(made).string();
    }
    ~TempDir() { std::filesystem::remove_all(m_path); }
    TempDir(TempDir const&) = delete;
    TempDir& operator=(TempDir const&) = delete;

    /// The folder's canonical path, without a trailing separator.
    std::string const& path() const { return m_path; }
    std::string file(std::string const& relative) const { return m_path + "/" + relative; }
    /// Writes `content` to `relative` (creating parent folders); returns its full path.
    std::string write(std::string const& relative, std::string const& content) const
    {
        std::string const full = file(relative);
        std::filesystem::create_directories(std::filesystem::path(full).parent_path());
        EXPECT_TRUE(std::ofstream(full, std::ios::binary) << content) << "cannot write " << full;
        return full;
    }

private:
    std::string m_path;
};

/// `relative` in the folder of real configs written by others ($VERRA_SHARED_CONFIGS), canonical; "" when it is not
/// there, and the tests that need it skip.
inline std::string sharedFile(std::string const& relative)
{
    char const* const root = std::getenv("VERRA_SHARED_CONFIGS");
    std::filesystem::path const path = std::filesystem::path(root != nullptr ? root : "/nonexistent") / relative;
    return std::filesystem::is_regular_file(path) ? std::filesystem::canonical(path).string() : "";
}

/// The ACES CG config of that folder.
constexpr char const* kCgConfig = "aces-cg-config-v1.0.0_aces-v1.3_ocio-v2.1/cg-config-v1.0.0_aces-v1.3_ocio-v2.1.ocio";

/// Records every line of orv::logError while it lives; then restores the previous sink.
class LogCapture {
public:
    LogCapture() : m_previous(orv::setErrorSink([this](char const* l) { m_lines.push_back(l); })) {}
    ~LogCapture() { orv::setErrorSink(m_previous); }
    LogCapture(LogCapture const&) = delete;
    LogCapture& operator=(LogCapture const&) = delete;

    std::vector<std::string> const& lines() const { return m_lines; }
    void clear() { m_lines.clear(); }

private:
    std::vector<std::string> m_lines;
    orv::ErrorSink m_previous;
};

} // namespace verra_test
