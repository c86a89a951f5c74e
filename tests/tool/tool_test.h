#pragma once
// The fixture of the tool's tests: a temporary folder, a child environment
// with no config at all unless a test adds one, and helpers around them.

#include "support/env_guard.h"
#include "support/ocio_config.h"
#include "support/temp_dir.h"
#include "tool_runner.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace verra_test {

/// Each test gets a fresh folder and an environment in which neither
/// ocio.txt nor $OCIO names a config: XDG_CONFIG_HOME is an empty folder and
/// OCIO is unset, for the child and for this process alike (so that the
/// module, when a test calls it here, sees what the program sees).
class ToolTest : public ::testing::Test {
protected:
    ToolTest();

    /// Runs the program with `args` in the child environment.
    ToolResult run(std::vector<std::string> const& args, bool stderrIsTerminal = false) const;

    /// Runs the shell `script` in the child environment, with the program's
    /// path as $1 and `args` after it.
    ToolResult runScript(std::string const& script, std::vector<std::string> const& args) const;

    /// Sets `name` to `value` in the child environment (not in this process).
    void setChildEnv(std::string const& name, std::string const& value);

    /// Writes `config` to `fileName` in the folder; returns its path.
    std::string writeConfig(OcioConfigText const& config, std::string const& fileName = "config.ocio") const;

    /// A config with the colour spaces "lin", "raw" and "srgb_tex" (the sRGB
    /// curve), displays "Monitor" (views "Standard", "Raw") and "Projector"
    /// (view "Film"), the look "Warm" and the roles "scene_linear" and
    /// "default".
    static OcioConfigText sampleConfig();

    /// The folder's path of `relative`.
    std::string file(std::string const& relative) const { return m_dir.file(relative); }

    /// The test's own folder, removed at its end.
    TempDir m_dir;
    /// The child's (and this process's) XDG_CONFIG_HOME: an empty folder
    /// inside `m_dir` unless the test writes verra/ocio.txt into it.
    std::string m_configHome;

private:
    EnvGuard m_ocio{"OCIO"};
    EnvGuard m_xdg{"XDG_CONFIG_HOME"};
    std::vector<std::pair<std::string, std::string>> m_childEnv;
};

/// `text` split at line ends ("\n", or "\r\n" from a terminal), without
/// them; no empty last line.
std::vector<std::string> splitLines(std::string const& text);

/// True when `text` contains `part`.
bool contains(std::string const& text, std::string const& part);

} // namespace verra_test
