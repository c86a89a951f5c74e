#pragma once
// RAII guards for environment variables: every change a test makes is undone.

#include <optional>
#include <string>

namespace verra_test {

/// Remembers the variable's value (or that it was unset) and restores it on
/// destruction.
class EnvGuard {
public:
    explicit EnvGuard(std::string name);
    ~EnvGuard();
    EnvGuard(EnvGuard const&) = delete;
    EnvGuard& operator=(EnvGuard const&) = delete;

    void set(std::string const& value) const;
    void unset() const;

private:
    std::string m_name;
    std::optional<std::string> m_saved;
};

} // namespace verra_test
