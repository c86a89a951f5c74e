#include "json_writer.h"

#include <cstdio>

namespace colorconfig {

namespace {

/// A string array whose one-line form fits in this many bytes stays on one line.
constexpr std::size_t kInlineArrayWidth = 60;

/// The number of bytes of the UTF-8 sequence that starts at `text[i]`, or 0
/// when the bytes there are not a valid sequence.
std::size_t utf8Length(std::string_view text, std::size_t i)
{
    auto byte = [&](std::size_t k) { return static_cast<unsigned char>(text[k]); };
    unsigned char const lead = byte(i);
    std::size_t length = 0;
    unsigned long minimum = 0;
    unsigned long codePoint = 0;
    if (lead >= 0xC2 && lead <= 0xDF) {
        length = 2;
        minimum = 0x80;
        codePoint = lead & 0x1Fu;
    } else if (lead >= 0xE0 && lead <= 0xEF) {
        length = 3;
        minimum = 0x800;
        codePoint = lead & 0x0Fu;
    } else if (lead >= 0xF0 && lead <= 0xF4) {
        length = 4;
        minimum = 0x10000;
        codePoint = lead & 0x07u;
    } else {
        return 0;
    }
    if (i + length > text.size()) {
        return 0;
    }
    for (std::size_t k = 1; k < length; ++k) {
        if ((byte(i + k) & 0xC0u) != 0x80u) {
            return 0;
        }
        codePoint = (codePoint << 6) | (byte(i + k) & 0x3Fu);
    }
    bool const surrogate = codePoint >= 0xD800 && codePoint <= 0xDFFF;
    if (codePoint < minimum || codePoint > 0x10FFFF || surrogate) {
        return 0;
    }
    return length;
}

} // namespace

std::string jsonQuote(std::string_view text)
{
    std::string quoted = "\"";
    for (std::size_t i = 0; i < text.size();) {
        unsigned char const c = static_cast<unsigned char>(text[i]);
        if (c >= 0x80) {
            std::size_t const length = utf8Length(text, i);
            if (length == 0) {
                quoted += "\\ufffd";
                ++i;
            } else {
                quoted.append(text.substr(i, length));
                i += length;
            }
            continue;
        }
        switch (c) {
        case '"': quoted += "\\\""; break;
        case '\\': quoted += "\\\\"; break;
        case '\n': quoted += "\\n"; break;
        case '\r': quoted += "\\r"; break;
        case '\t': quoted += "\\t"; break;
        case '\b': quoted += "\\b"; break;
        case '\f': quoted += "\\f"; break;
        default:
            if (c < 0x20) {
                char escape[8];
                std::snprintf(escape, sizeof escape, "\\u%04x", static_cast<unsigned>(c));
                quoted += escape;
            } else {
                quoted += static_cast<char>(c);
            }
        }
        ++i;
    }
    quoted += '"';
    return quoted;
}

void JsonWriter::startValue(std::string_view key)
{
    if (m_hasMember.empty()) {
        return;
    }
    if (m_hasMember.back()) {
        m_text += ',';
    }
    m_hasMember.back() = true;
    m_text += '\n';
    m_text.append(2 * m_hasMember.size(), ' ');
    if (!key.empty()) {
        m_text += jsonQuote(key);
        m_text += ": ";
    }
}

void JsonWriter::open(std::string_view key, char bracket)
{
    startValue(key);
    m_text += bracket;
    m_hasMember.push_back(false);
}

void JsonWriter::close(char bracket)
{
    bool const hadMember = m_hasMember.back();
    m_hasMember.pop_back();
    if (hadMember) {
        m_text += '\n';
        m_text.append(2 * m_hasMember.size(), ' ');
    }
    m_text += bracket;
    if (m_hasMember.empty()) {
        m_text += '\n';
    }
}

void JsonWriter::beginObject(std::string_view key) { open(key, '{'); }

void JsonWriter::endObject() { close('}'); }

void JsonWriter::beginArray(std::string_view key) { open(key, '['); }

void JsonWriter::endArray() { close(']'); }

void JsonWriter::string(std::string_view key, std::string_view value)
{
    startValue(key);
    m_text += jsonQuote(value);
}

void JsonWriter::stringArray(std::string_view key, std::vector<std::string> const& values)
{
    std::string inlineForm = "[";
    for (std::size_t i = 0; i < values.size(); ++i) {
        inlineForm += (i == 0 ? "" : ", ") + jsonQuote(values[i]);
    }
    inlineForm += ']';
    if (inlineForm.size() <= kInlineArrayWidth) {
        startValue(key);
        m_text += inlineForm;
        return;
    }
    beginArray(key);
    for (std::string const& value : values) {
        string({}, value);
    }
    endArray();
}

} // namespace colorconfig
