#pragma once
// printf-style formatting into a std::string, shared by String::format and
// the error log. Private to the core library.

#include <cstdarg>
#include <cstdio>
#include <string>

namespace orv::detail {

/// Formats `fmt` with `args` into `out` (replacing its content), with no
/// limit on the length. False when the format cannot be used; `out` is then
/// empty. Consumes `args`. Throws `std::bad_alloc` when memory runs out.
#if defined(__GNUC__)
__attribute__((format(printf, 2, 0)))
#endif
inline bool
vformat(std::string& out, char const* fmt, va_list args)
{
    out.clear();
    va_list measure;
    va_copy(measure, args);
    int const needed = std::vsnprintf(nullptr, 0, fmt, measure);
    va_end(measure);
    if (needed <= 0) {
        return needed == 0;
    }
    out.assign(static_cast<std::size_t>(needed), '\0');
    if (std::vsnprintf(out.data(), out.size() + 1, fmt, args) != needed) {
        out.clear();
        return false;
    }
    return true;
}

} // namespace orv::detail
