#pragma once
// What every subcommand does before it runs: route the colour module's error
// lines to standard error, and load the configuration.

#include "args.h"

#include <orv/log.h>
#include <orv/string.h>

namespace colorconfig {

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

/// Runs `ColorConfig::loadOcioConfig` with the value of --config (empty when
/// not given, so that ocio.txt and $OCIO are still honoured) and returns its
/// report. A config file that OpenImageIO refused is reported as an error on
/// standard error (the built-in colour spaces are then in use). With
/// `reportToStderr`, the report is also printed on standard error: as a note
/// with --verbose, and as a warning when --config was given but the report
/// does not say that a config file is used.
orv::String loadConfiguration(ParsedArgs const& args, bool reportToStderr);

} // namespace colorconfig
