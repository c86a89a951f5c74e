#pragma once
// RAII guards for environment variables: every change a test makes is undone.

#include <cstdlib>
#include <optional>
#include <string>
#include <utility>

namespace verra_test {

/// Remembers the variable's value (or that it was unset) and restores it on
/// destruction.
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

private:
    std::string m_name;
    std::optional<std::string> m_saved;
};

} // namespace verra_test
