#include "console.h"

#include <cstdarg>
#include <cstdio>
#include <unistd.h>

namespace colorconfig::console {

namespace {

/// Width of the status line: one less than the terminal's 80 columns, so
/// that the cursor never wraps.
constexpr std::size_t kStatusWidth = 79;

bool s_statusShown = false;

void printPrefixed(char const* prefix, char const* fmt, std::va_list args)
{
    clearStatus();
    std::fflush(stdout);
    std::fputs(prefix, stderr);
    std::vfprintf(stderr, fmt, args);
    std::fputc('\n', stderr);
    std::fflush(stderr);
}

} // namespace

void out(std::string const& line)
{
    clearStatus();
    std::fwrite(line.data(), 1, line.size(), stdout);
    std::fputc('\n', stdout);
}

void error(char const* fmt, ...)
{
    std::va_list args;
    va_start(args, fmt);
    printPrefixed("colorconfig: error: ", fmt, args);
    va_end(args);
}

void warning(char const* fmt, ...)
{
    std::va_list args;
    va_start(args, fmt);
    printPrefixed("colorconfig: warning: ", fmt, args);
    va_end(args);
}

void note(char const* fmt, ...)
{
    std::va_list args;
    va_start(args, fmt);
    printPrefixed("colorconfig: ", fmt, args);
    va_end(args);
}

void errorText(std::string const& text)
{
    clearStatus();
    std::fflush(stdout);
    std::fwrite(text.data(), 1, text.size(), stderr);
    std::fflush(stderr);
}

bool stderrIsTerminal()
{
    static bool const terminal = ::isatty(STDERR_FILENO) == 1;
    return terminal;
}

void status(std::string const& text)
{
    if (!stderrIsTerminal()) {
        return;
    }
    std::string const shown = text.size() > kStatusWidth ? text.substr(0, kStatusWidth) : text;
    // Carriage return, the text, then "erase to the end of the line".
    std::fprintf(stderr, "\r%s\033[K", shown.c_str());
    std::fflush(stderr);
    s_statusShown = true;
}

void clearStatus()
{
    if (!s_statusShown) {
        return;
    }
    std::fputs("\r\033[K", stderr);
    std::fflush(stderr);
    s_statusShown = false;
}

} // namespace colorconfig::console
