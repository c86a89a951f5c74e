#pragma once
// Everything the program writes to the terminal: results on standard output,
// diagnostics on standard error, and a transient status line that is shown
// only when standard error is a terminal.

#include <string>

namespace colorconfig::console {

/// Writes `line` and a line end to standard output, after clearing the
/// status line.
void out(std::string const& line);

/// Writes "colorconfig: error: <message>" to standard error.
void error(char const* fmt, ...)
#if defined(__GNUC__)
    __attribute__((format(printf, 1, 2)))
#endif
    ;

/// Writes "colorconfig: warning: <message>" to standard error.
void warning(char const* fmt, ...)
#if defined(__GNUC__)
    __attribute__((format(printf, 1, 2)))
#endif
    ;

/// Writes "colorconfig: <message>" to standard error.
void note(char const* fmt, ...)
#if defined(__GNUC__)
    __attribute__((format(printf, 1, 2)))
#endif
    ;

/// Writes `text` to standard error as it is (usage texts, hints).
void errorText(std::string const& text);

/// True when standard error is a terminal; asked once and remembered.
bool stderrIsTerminal();

/// Replaces the status line on standard error with `text`, cut to fit an
/// 80-column terminal. Does nothing when standard error is not a terminal.
void status(std::string const& text);

/// Removes the status line, if one is shown.
void clearStatus();

} // namespace colorconfig::console
