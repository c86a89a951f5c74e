#pragma once
// Which source the module's configuration discovery chose, as a value: a
// question its report answers only in prose.
//
// Example:
//
//     orv::String report = ColorConfig::loadOcioConfig("");
//     if (configSource() == ConfigSource::OcioTxt) { ... }   // ocio.txt won
//     orv::String txt = ocioTxtPath();                      // where ocio.txt is looked for

#include <orv/string.h>

namespace orv::verra_sdk {

/// Where the configuration in use came from.
enum class ConfigSource {
    /// No file: the built-in colour spaces (also before the first load).
    BuiltIns,
    /// The argument of `ColorConfig::loadOcioConfig`, as a file path.
    ArgumentPath,
    /// The environment variable that the argument named (NAME, $NAME, %NAME%).
    ArgumentVariable,
    /// The path written in "ocio.txt" in the user's product directory.
    OcioTxt,
    /// The `OCIO` environment variable.
    OcioVariable,
};

/// The source chosen by the latest `ColorConfig::loadOcioConfig` (BuiltIns
/// before any). A file source is reported even when OpenImageIO then refused
/// the file, as the report names it. Costs nothing; throws nothing.
ConfigSource configSource() noexcept;

/// A word for `source`: "built-ins", "argument path", "argument variable",
/// "ocio.txt" or "OCIO variable".
char const* configSourceName(ConfigSource source) noexcept;

/// The path of "ocio.txt" in the user's product directory, where discovery
/// looks for it (the file need not exist). Creates the directory as the
/// discovery does.
String ocioTxtPath();

} // namespace orv::verra_sdk
