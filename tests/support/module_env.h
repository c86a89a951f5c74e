#pragma once
// A clean, isolated environment for tests of the module: a temporary folder,
// a user product directory inside it, and no OCIO variable.

#include "support/env_guard.h"
#include "support/ocio_config.h"
#include "support/temp_dir.h"

#include <string>

namespace verra_test {

/// Points XDG_CONFIG_HOME and HOME into a temporary folder and unsets OCIO,
/// restoring all three on destruction.
class ModuleEnv {
public:
    ModuleEnv()
    {
        m_xdg.set(m_dir.mkdir("xdg"));
        m_home.set(m_dir.mkdir("home"));
        m_ocio.unset();
    }

    TempDir const& dir() const { return m_dir; }
    /// The product directory in which the module looks for "ocio.txt".
    std::string productDir() const { return m_dir.path() + "/xdg/verra"; }
    /// Writes "ocio.txt" in the product directory with `content`; returns its path.
    std::string writeOcioTxt(std::string const& content) const { return m_dir.write("xdg/verra/ocio.txt", content); }
    /// Writes `config` as `relative` in the temporary folder; returns its path.
    std::string writeConfig(std::string const& relative, OcioConfigText const& config) const
    {
        return m_dir.write(relative, config.str());
    }
    EnvGuard const& ocio() const { return m_ocio; }

private:
    TempDir m_dir;
    EnvGuard m_xdg{"XDG_CONFIG_HOME"};
    EnvGuard m_home{"HOME"};
    EnvGuard m_ocio{"OCIO"};
};

} // namespace verra_test
