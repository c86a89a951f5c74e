#include "support/module_env.h"

namespace verra_test {

ModuleEnv::ModuleEnv()
{
    m_xdg.set(m_dir.mkdir("xdg"));
    m_home.set(m_dir.mkdir("home"));
    m_ocio.unset();
}

std::string ModuleEnv::writeOcioTxt(std::string const& content) const
{
    return m_dir.write("xdg/verra/ocio.txt", content);
}

std::string ModuleEnv::writeConfig(std::string const& relative, OcioConfigText const& config) const
{
    return m_dir.write(relative, config.str());
}

} // namespace verra_test
