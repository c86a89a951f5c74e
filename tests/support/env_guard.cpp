#include "support/env_guard.h"

#include <cstdlib>
#include <utility>

namespace verra_test {

EnvGuard::EnvGuard(std::string name) : m_name(std::move(name))
{
    if (char const* value = std::getenv(m_name.c_str())) {
        m_saved = value;
    }
}

EnvGuard::~EnvGuard()
{
    if (m_saved) {
        ::setenv(m_name.c_str(), m_saved->c_str(), 1);
    } else {
        ::unsetenv(m_name.c_str());
    }
}

void EnvGuard::set(std::string const& value) const { ::setenv(m_name.c_str(), value.c_str(), 1); }

void EnvGuard::unset() const { ::unsetenv(m_name.c_str()); }

} // namespace verra_test
