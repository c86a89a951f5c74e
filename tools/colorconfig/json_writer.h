#pragma once
// A small writer of indented JSON text.

#include <string>
#include <string_view>
#include <vector>

namespace colorconfig {

/// `text` as a JSON string literal, quotes included. Quotes, backslashes and
/// control characters are escaped; valid UTF-8 passes through; each byte
/// that is not part of valid UTF-8 becomes U+FFFD, so the result is always
/// valid JSON.
std::string jsonQuote(std::string_view text);

/// Builds a JSON document member by member, two spaces per level. The caller
/// opens and closes objects and arrays in a proper nesting; the writer puts
/// the commas and line breaks.
class JsonWriter {
public:
    /// Opens an object: the document itself, an array element, or the value
    /// of `key` inside an object.
    void beginObject(std::string_view key = {});
    /// Closes the innermost object.
    void endObject();
    /// Opens an array, as `beginObject`.
    void beginArray(std::string_view key = {});
    /// Closes the innermost array.
    void endArray();
    /// Writes a string member (`key` empty inside an array).
    void string(std::string_view key, std::string_view value);
    /// Writes an array of strings on one line when short, else one per line.
    void stringArray(std::string_view key, std::vector<std::string> const& values);

    /// The text written so far, followed by a line end once the document's
    /// outermost value is closed.
    std::string const& text() const { return m_text; }

private:
    void startValue(std::string_view key);
    void open(std::string_view key, char bracket);
    void close(char bracket);

    std::string m_text;
    /// One entry per open object or array: whether it has a member yet.
    std::vector<bool> m_hasMember;
};

} // namespace colorconfig
