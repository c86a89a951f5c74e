#include <orv/log.h>

#include "vformat.h"

#include <cstdarg>
#include <cstdio>
#include <string>
#include <utility>

namespace orv {

namespace {

/// The installed sink; empty means standard error. A function-local static
/// so that logging from other static initialisers finds it constructed.
ErrorSink& installedSink()
{
    static ErrorSink sink;
    return sink;
}

void writeToStderr(std::string const& line)
{
    // One write per line, so lines from several processes sharing the
    // terminal do not interleave mid-line.
    std::string const out = "error: " + line + "\n";
    std::fwrite(out.data(), 1, out.size(), stderr);
    std::fflush(stderr);
}

} // namespace

void logError(char const* fmt, ...)
{
    if (!fmt) {
        return;
    }
    try {
        std::string line;
        va_list args;
        va_start(args, fmt);
        bool const formatted = detail::vformat(line, fmt, args);
        va_end(args);
        if (!formatted) {
            line = fmt; // an unusable format still leaves a trace in the log
        }

        if (!line.empty() && line.back() == '\n') {
            line.pop_back();
        }
        ErrorSink const& sink = installedSink();
        if (sink) {
            sink(line.c_str());
        } else {
            writeToStderr(line);
        }
    } catch (...) {
        // Logging reports failures; it must never become one.
    }
}

ErrorSink setErrorSink(ErrorSink sink)
{
    return std::exchange(installedSink(), std::move(sink));
}

} // namespace orv
