#include <orv/os.h>

#include <pwd.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <string>
#include <vector>

namespace orv::os {

String getEnv(String const& name)
{
    std::string_view const key = name.view();
    // An empty name, or one holding "=" or a NUL, can never be set.
    if (key.empty() || key.find('=') != std::string_view::npos || key.find('\0') != std::string_view::npos) {
        return String();
    }
    return String(std::getenv(name.buf()));
}

} // namespace orv::os

namespace orv::fs {

namespace {

/// $HOME, or the home directory of the password database; empty when
/// neither is known.
std::string homeDirectory()
{
    if (char const* const home = std::getenv("HOME"); home && *home) {
        return home;
    }
    long const suggested = ::sysconf(_SC_GETPW_R_SIZE_MAX);
    std::vector<char> buffer(suggested > 0 ? static_cast<std::size_t>(suggested) : 16384);
    for (;;) {
        passwd entry{};
        passwd* found = nullptr;
        int const error = ::getpwuid_r(::getuid(), &entry, buffer.data(), buffer.size(), &found);
        if (error == ERANGE && buffer.size() < (std::size_t{1} << 20)) {
            buffer.resize(buffer.size() * 2); // the entry did not fit: retry with more room
            continue;
        }
        if (error == 0 && found && found->pw_dir) {
            return found->pw_dir;
        }
        return std::string();
    }
}

} // namespace

String verraUserDir(bool config)
{
    std::string base;
    char const* const xdg = std::getenv(config ? "XDG_CONFIG_HOME" : "XDG_DATA_HOME");
    // Relative values are ignored, as the per-user directory convention says.
    if (xdg && xdg[0] == '/') {
        base = xdg;
    } else {
        base = homeDirectory();
        if (base.empty()) {
            return String();
        }
        while (!base.empty() && base.back() == '/') {
            base.pop_back();
        }
        base += config ? "/.config" : "/.local/share";
    }
    while (!base.empty() && base.back() == '/') {
        base.pop_back();
    }
    base += "/verra";
    return String(std::string_view(base));
}

} // namespace orv::fs
