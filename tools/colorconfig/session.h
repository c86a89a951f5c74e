#pragma once
// What every subcommand does before it runs: route the colour module's error
// lines to standard error, and load the configuration.

#include <orv/log.h>
#include <orv/string.h>

#include <OpenColorIO/OpenColorIO.h>

#include <string>
#include <vector>

namespace colorconfig {

struct Options;

/// Sends every line of the module's error log to standard error as
/// "colorconfig: error: <line>" while it lives; restores the previous sink
/// when it goes.
class ErrorLogToStderr {
public:
    ErrorLogToStderr();
    ~ErrorLogToStderr();
    ErrorLogToStderr(ErrorLogToStderr const&) = delete;
    ErrorLogToStderr& operator=(ErrorLogToStderr const&) = delete;

private:
    orv::ErrorSink m_previous;
};

/// The configuration a subcommand runs with.
struct LoadedConfig {
    /// The report of `ColorConfig::loadOcioConfig`.
    orv::String report;
    /// True when a configuration file is in use; false when only the
    /// built-in colour spaces are.
    bool usesFile = false;
    /// Why the configuration the user asked for is not what is in use: the
    /// --config value named no usable file, or OpenColorIO refused the chosen
    /// file (its reason), or files that the chosen file names are missing
    /// (one line each). Empty when all is well.
    std::vector<std::string> problems;
    /// The file in use as OpenColorIO reads it, for what the module does not
    /// tell (aliases, roles, inactive spaces, views, file rules); null when
    /// only the built-in colour spaces are in use or OpenColorIO refuses it.
    /// It is also OpenColorIO's current configuration.
    OCIO_NAMESPACE::ConstConfigRcPtr ocio;
};

/// Runs `ColorConfig::loadOcioConfig` with the value of --config (empty when
/// not given, so that ocio.txt and $OCIO are still honoured) and checks what
/// it gave. A configuration file in use becomes OpenColorIO's current one,
/// so that file rules come from it and not from $OCIO. With --verbose and `reportToStderr`, the report is printed on
/// standard error.
LoadedConfig loadConfiguration(Options const& options, bool reportToStderr);

} // namespace colorconfig
