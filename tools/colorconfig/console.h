#pragma once
// Everything the program writes to the terminal: results on standard output,
// diagnostics on standard error, and a transient status line that is shown
// only when standard error is a terminal.

#include <orv/log.h>

#include <fmt/format.h>

#include <string>

namespace colorconfig::console {

/// Writes `text` to standard output as it is, after clearing the status
/// line.
void print(std::string const& text);

/// Writes `line` and a line end to standard output.
void out(std::string const& line);

/// Writes `text` to standard error as it is (usage texts, hints), after
/// clearing the status line and flushing standard output.
void errorText(std::string const& text);

/// Writes "colorconfig: error: <message>" and a line end to standard error.
template <class... Args>
void error(fmt::format_string<Args...> format, Args&&... args)
{
    errorText("colorconfig: error: " + fmt::format(format, std::forward<Args>(args)...) + "\n");
}

/// Writes "colorconfig: <message>" and a line end to standard error.
template <class... Args>
void note(fmt::format_string<Args...> format, Args&&... args)
{
    errorText("colorconfig: " + fmt::format(format, std::forward<Args>(args)...) + "\n");
}

/// Replaces the status line on standard error with `text`, cut to fit an
/// 80-column terminal. Does nothing when standard error is not a terminal
/// (asked once and remembered).
void status(std::string const& text);

/// Removes the status line, if one is shown.
void clearStatus();

/// Sends every line of the colour module's error log to standard error as
/// "colorconfig: error: <line>" while it lives; restores the previous sink
/// when it goes.
class ErrorLogToStderr {
public:
    ErrorLogToStderr() : m_previous(orv::setErrorSink([](char const* text) { error("{}", text); })) {}
    ~ErrorLogToStderr() { orv::setErrorSink(m_previous); }
    ErrorLogToStderr(ErrorLogToStderr const&) = delete;
    ErrorLogToStderr& operator=(ErrorLogToStderr const&) = delete;

private:
    orv::ErrorSink m_previous;
};

} // namespace colorconfig::console
