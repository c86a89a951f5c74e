#include "console.h"

#include <cstdio>
#include <unistd.h>

namespace colorconfig::console {

namespace {

/// Width of the status line: one less than the terminal's 80 columns, so
/// that the cursor never wraps.
constexpr int kStatusWidth = 79;

bool s_statusShown = false;

} // namespace

void print(std::string const& text)
{
    clearStatus();
    std::fwrite(text.data(), 1, text.size(), stdout);
}

void out(std::string const& text)
{
    print(text + "\n");
}

void errorText(std::string const& text)
{
    clearStatus();
    std::fflush(stdout);
    std::fwrite(text.data(), 1, text.size(), stderr);
    std::fflush(stderr);
}

void status(std::string const& text)
{
    static bool const terminal = ::isatty(STDERR_FILENO) == 1;
    if (!terminal) {
        return;
    }
    // Carriage return, the text cut to fit, then "erase to the end of the line".
    std::fprintf(stderr, "\r%.*s\033[K", kStatusWidth, text.c_str());
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
