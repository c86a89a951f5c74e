#pragma once
// Environment and per-user directories.

#include <orv/string.h>

namespace orv::os {

/// The value of the environment variable `name`, or the empty text when it
/// is not set (or `name` is empty or holds "=").
String getEnv(String const& name);

} // namespace orv::os

namespace orv::fs {

/// The per-user directory of the product, without a trailing separator:
/// with `config` true the configuration directory, `$XDG_CONFIG_HOME/verra`
/// or, when that variable is unset, empty or relative, `$HOME/.config/verra`; with
/// `config` false the data directory, `$XDG_DATA_HOME/verra` or
/// `$HOME/.local/share/verra`. The home directory falls back to the password
/// database when HOME is unset. Nothing is created; the empty text when no
/// home directory can be found.
String verraUserDir(bool config);

} // namespace orv::fs
