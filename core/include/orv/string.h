#pragma once
// orv::String: an immutable, shared text.

#include <orv/ref_counted.h>

#include <cstdint>
#include <string>
#include <string_view>

namespace orv {

/// A text handle. Copies share one body, and a body's text never changes:
/// assigning new text re-points this handle only, and the transforming
/// operations (`trim`, `trimChars`, `toLower`) return new Strings (or this
/// one's body when the text would come out the same). The empty text has no
/// body. Texts may hold any bytes; `buf()` stops at the first NUL.
class String : public RefersTo<IRefCounted> {
public:
    /// The empty text.
    String() noexcept = default;
    /// A copy of `text`. A `length` of 0 takes the whole NUL-terminated text;
    /// any other value takes exactly that many bytes. A null `text` gives the
    /// empty text. Throws `std::bad_alloc` when memory runs out.
    String(char const* text, unsigned long length = 0); // NOLINT: implicit by design
    /// A copy of the bytes of `text`.
    explicit String(std::string_view text);

    /// Takes the text `text` (null means empty); other handles keep theirs.
    String& operator=(char const* text);

    /// The text, NUL-terminated; never null ("" for the empty text). Valid
    /// while this handle lives and keeps its text.
    char const* buf() const noexcept;
    /// The text's bytes.
    std::string_view view() const noexcept;
    /// Number of bytes.
    std::size_t length() const noexcept;
    /// True for the empty text.
    bool isEmpty() const noexcept { return length() == 0; }

    /// printf-style formatting into a new String. A format error gives the
    /// empty text.
    static String format(char const* fmt, ...)
#if defined(__GNUC__)
        __attribute__((format(printf, 1, 2)))
#endif
        ;

    /// 0 when both texts are equal apart from ASCII letter case; otherwise
    /// negative or positive as in a case-folded byte comparison.
    int compareNoCase(String const& other) const noexcept;
    bool operator==(String const& other) const noexcept
    {
        return view() == other.view();
    }
    bool operator!=(String const& other) const noexcept
    {
        return !(*this == other);
    }
    bool operator==(char const* other) const noexcept;
    bool operator!=(char const* other) const noexcept
    {
        return !(*this == other);
    }

    /// A copy with ASCII letters in lower case (`ascii` true) or, with
    /// `ascii` false, also the letters of the C locale's `tolower`; the same
    /// body when nothing changes.
    String toLower(bool ascii) const;
    /// A copy without white space (space, tab, line feed, vertical tab, form
    /// feed, carriage return) at its start (`start`) and/or its end (`end`).
    String trim(bool start, bool end) const;
    /// A copy without any of the characters of `atStart` at its start and
    /// without any of those of `atEnd` at its end (every matching character
    /// of a run is removed).
    String trimChars(String const& atStart, String const& atEnd) const;

    /// 64-bit FNV-1a hash of the text's bytes; equal texts hash equal.
    std::uint64_t hash() const noexcept;

private:
    friend class Path;
    struct AdoptBody {};
    /// Takes over one reference to `body` (null: the empty text).
    String(AdoptBody, IRefCounted* body) noexcept : RefersTo(body)
    {}
    static String fromBytes(char const* data, std::size_t size);
};

} // namespace orv
