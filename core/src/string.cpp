#include <orv/string.h>

#include "string_body.h"
#include "vformat.h"

#include <cctype>
#include <cstdarg>
#include <cstdio>
#include <cstring>

namespace orv {

namespace {

char asciiLower(char c) noexcept
{
    return (c >= 'A' && c <= 'Z') ? static_cast<char>(c - 'A' + 'a') : c;
}

char localeLower(char c) noexcept
{
    return static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
}

bool isBlank(char c) noexcept
{
    return c == ' ' || c == '\t' || c == '\n' || c == '\v' || c == '\f' || c == '\r';
}

} // namespace

String::String(char const* text, unsigned long length)
    : RefersTo(text ? detail::makeTextBody(std::string(text, length ? length : std::strlen(text))) : nullptr)
{}

String::String(std::string_view text) : RefersTo(detail::makeTextBody(std::string(text)))
{}

String String::fromBytes(char const* data, std::size_t size)
{
    return String(AdoptBody{}, detail::makeTextBody(std::string(data, size)));
}

String& String::operator=(char const* text)
{
    // The new body is built before the old one is released, so `text` may
    // point into this handle's own text.
    adopt(text ? detail::makeTextBody(std::string(text)) : nullptr);
    return *this;
}

char const* String::buf() const noexcept
{
    IRefCounted const* const b = body();
    return b ? static_cast<detail::TextBody const*>(b)->text().c_str() : "";
}

std::string_view String::view() const noexcept
{
    return detail::textOf(body());
}

std::size_t String::length() const noexcept
{
    return view().size();
}

String String::format(char const* fmt, ...)
{
    if (!fmt) {
        return String();
    }
    std::string text;
    va_list args;
    va_start(args, fmt);
    bool const formatted = detail::vformat(text, fmt, args);
    va_end(args);
    if (!formatted) {
        return String();
    }
    return String(AdoptBody{}, detail::makeTextBody(std::move(text)));
}

int String::compareNoCase(String const& other) const noexcept
{
    std::string_view const a = view();
    std::string_view const b = other.view();
    std::size_t const common = a.size() < b.size() ? a.size() : b.size();
    for (std::size_t i = 0; i < common; ++i) {
        int const ca = static_cast<unsigned char>(asciiLower(a[i]));
        int const cb = static_cast<unsigned char>(asciiLower(b[i]));
        if (ca != cb) {
            return ca - cb;
        }
    }
    if (a.size() == b.size()) {
        return 0;
    }
    return a.size() < b.size() ? -1 : 1;
}

bool String::operator==(char const* other) const noexcept
{
    return view() == (other ? std::string_view(other) : std::string_view());
}

String String::toLower(bool ascii) const
{
    std::string_view const text = view();
    auto const lower = ascii ? asciiLower : localeLower;
    std::size_t first = 0;
    while (first < text.size() && lower(text[first]) == text[first]) {
        ++first;
    }
    if (first == text.size()) {
        return *this; // nothing to change: share the body
    }
    std::string result(text);
    for (std::size_t i = first; i < result.size(); ++i) {
        result[i] = lower(result[i]);
    }
    return String(AdoptBody{}, detail::makeTextBody(std::move(result)));
}

String String::trim(bool start, bool end) const
{
    std::string_view const text = view();
    std::size_t first = 0;
    std::size_t last = text.size();
    if (start) {
        while (first < last && isBlank(text[first])) {
            ++first;
        }
    }
    if (end) {
        while (last > first && isBlank(text[last - 1])) {
            --last;
        }
    }
    if (first == 0 && last == text.size()) {
        return *this;
    }
    return fromBytes(text.data() + first, last - first);
}

String String::trimChars(String const& atStart, String const& atEnd) const
{
    std::string_view const text = view();
    std::string_view const leading = atStart.view();
    std::string_view const trailing = atEnd.view();
    std::size_t first = 0;
    std::size_t last = text.size();
    while (first < last && leading.find(text[first]) != std::string_view::npos) {
        ++first;
    }
    while (last > first && trailing.find(text[last - 1]) != std::string_view::npos) {
        --last;
    }
    if (first == 0 && last == text.size()) {
        return *this;
    }
    return fromBytes(text.data() + first, last - first);
}

std::uint64_t String::hash() const noexcept
{
    std::uint64_t h = 0xcbf29ce484222325ull;
    for (char const c : view()) {
        h ^= static_cast<unsigned char>(c);
        h *= 0x100000001b3ull;
    }
    return h;
}

} // namespace orv
