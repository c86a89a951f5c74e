#pragma once
// The body shared by String and Path handles: one immutable text.
//
// Private to the core library. A text body is never changed after it is
// built, which is what lets every copy of a String or Path share it.

#include <orv/ref_counted.h>

#include <cstddef>
#include <string>
#include <string_view>
#include <utility>

namespace orv::detail {

/// One immutable text, reference counted. Created with a count of one, which
/// the handle that builds it takes over.
class TextBody final : public RefCounted {
public:
    explicit TextBody(std::string text) noexcept : m_text(std::move(text)) {}

    std::string const& text() const noexcept { return m_text; }

private:
    ~TextBody() override = default;

    std::string const m_text;
};

/// The text of a String or Path body; `body` may be null (the empty text).
inline std::string_view textOf(IRefCounted const* body) noexcept
{
    return body ? std::string_view(static_cast<TextBody const*>(body)->text()) : std::string_view();
}

/// A new body holding `text`, or null for the empty text (which has no body).
/// Throws `std::bad_alloc` when memory runs out.
inline IRefCounted* makeTextBody(std::string text)
{
    if (text.empty()) {
        return nullptr;
    }
    return new TextBody(std::move(text));
}

} // namespace orv::detail
