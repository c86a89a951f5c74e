#pragma once
// The error log: one formatted line per failure.

#include <functional>

namespace orv {

/// Receives each error line, formatted and without a line end.
using ErrorSink = std::function<void(char const* line)>;

/// Formats a line printf-style and hands it to the installed sink; by
/// default the line goes to standard error as "error: <line>". Never throws.
void logError(char const* fmt, ...)
#if defined(__GNUC__)
    __attribute__((format(printf, 1, 2)))
#endif
    ;

/// Installs `sink` for every later line and returns the previous one; an
/// empty sink restores the default (standard error). Not thread-safe against
/// concurrent `logError` calls.
ErrorSink setErrorSink(ErrorSink sink);

} // namespace orv
