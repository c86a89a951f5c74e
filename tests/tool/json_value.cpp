#include "json_value.h"

#include <cstdlib>

namespace verra_test {

JsonValue const* JsonValue::member(std::string_view key) const
{
    for (auto const& [name, value] : members) {
        if (name == key) {
            return &value;
        }
    }
    return nullptr;
}

std::vector<std::string> JsonValue::strings() const
{
    std::vector<std::string> texts;
    for (JsonValue const& item : items) {
        if (item.kind != Kind::String) {
            return {};
        }
        texts.push_back(item.text);
    }
    return texts;
}

namespace {

class Reader {
public:
    explicit Reader(std::string_view text) : m_text(text) {}

    std::optional<JsonValue> document()
    {
        JsonValue value;
        if (!parseValue(value, 0)) {
            return std::nullopt;
        }
        skipBlanks();
        if (m_pos != m_text.size()) {
            fail("text after the value");
            return std::nullopt;
        }
        return value;
    }

    std::string const& error() const { return m_error; }

private:
    static constexpr int kMaxDepth = 64;

    /// Records the first error; always false.
    bool fail(std::string const& what)
    {
        if (m_error.empty()) {
            m_error = what + " at byte " + std::to_string(m_pos);
        }
        return false;
    }

    void skipBlanks()
    {
        while (m_pos < m_text.size() &&
               (m_text[m_pos] == ' ' || m_text[m_pos] == '\t' || m_text[m_pos] == '\n' || m_text[m_pos] == '\r')) {
            ++m_pos;
        }
    }

    bool take(char c)
    {
        if (m_pos < m_text.size() && m_text[m_pos] == c) {
            ++m_pos;
            return true;
        }
        return false;
    }

    bool literal(std::string_view word)
    {
        if (m_text.substr(m_pos, word.size()) != word) {
            return false;
        }
        m_pos += word.size();
        return true;
    }

    bool parseValue(JsonValue& value, int depth)
    {
        if (depth > kMaxDepth) {
            return fail("nesting too deep");
        }
        skipBlanks();
        if (m_pos >= m_text.size()) {
            return fail("unexpected end");
        }
        char const c = m_text[m_pos];
        if (c == '{') {
            return parseObject(value, depth);
        }
        if (c == '[') {
            return parseArray(value, depth);
        }
        if (c == '"') {
            value.kind = JsonValue::Kind::String;
            return parseString(value.text);
        }
        if (literal("true") || literal("false")) {
            value.kind = JsonValue::Kind::Bool;
            value.boolean = m_text[m_pos - 2] == 'u';
            return true;
        }
        if (literal("null")) {
            value.kind = JsonValue::Kind::Null;
            return true;
        }
        return parseNumber(value);
    }

    bool parseObject(JsonValue& value, int depth)
    {
        value.kind = JsonValue::Kind::Object;
        ++m_pos;
        skipBlanks();
        if (take('}')) {
            return true;
        }
        do {
            skipBlanks();
            std::string key;
            if (m_pos >= m_text.size() || m_text[m_pos] != '"' || !parseString(key)) {
                return fail("expected a member name");
            }
            if (value.member(key) != nullptr) {
                return fail("member '" + key + "' given twice");
            }
            skipBlanks();
            if (!take(':')) {
                return fail("expected ':'");
            }
            JsonValue member;
            if (!parseValue(member, depth + 1)) {
                return false;
            }
            value.members.emplace_back(std::move(key), std::move(member));
            skipBlanks();
        } while (take(','));
        return take('}') || fail("expected ',' or '}'");
    }

    bool parseArray(JsonValue& value, int depth)
    {
        value.kind = JsonValue::Kind::Array;
        ++m_pos;
        skipBlanks();
        if (take(']')) {
            return true;
        }
        do {
            JsonValue item;
            if (!parseValue(item, depth + 1)) {
                return false;
            }
            value.items.push_back(std::move(item));
            skipBlanks();
        } while (take(','));
        return take(']') || fail("expected ',' or ']'");
    }

    bool parseNumber(JsonValue& value)
    {
        std::size_t const start = m_pos;
        take('-');
        if (!take('0') && !digits()) {
            return fail("unexpected character");
        }
        if (take('.') && !digits()) {
            return fail("digits expected after '.'");
        }
        if (take('e') || take('E')) {
            if (!take('+')) {
                take('-');
            }
            if (!digits()) {
                return fail("digits expected in the exponent");
            }
        }
        value.kind = JsonValue::Kind::Number;
        value.number = std::strtod(std::string(m_text.substr(start, m_pos - start)).c_str(), nullptr);
        return true;
    }

    bool digits()
    {
        std::size_t const start = m_pos;
        while (m_pos < m_text.size() && m_text[m_pos] >= '0' && m_text[m_pos] <= '9') {
            ++m_pos;
        }
        return m_pos > start;
    }

    bool hex4(unsigned& code)
    {
        code = 0;
        for (int i = 0; i < 4; ++i) {
            if (m_pos >= m_text.size()) {
                return false;
            }
            char const c = m_text[m_pos++];
            unsigned digit = 0;
            if (c >= '0' && c <= '9') {
                digit = static_cast<unsigned>(c - '0');
            } else if (c >= 'a' && c <= 'f') {
                digit = static_cast<unsigned>(c - 'a' + 10);
            } else if (c >= 'A' && c <= 'F') {
                digit = static_cast<unsigned>(c - 'A' + 10);
            } else {
                return false;
            }
            code = code * 16 + digit;
        }
        return true;
    }

    static void appendUtf8(std::string& out, unsigned code)
    {
        if (code < 0x80) {
            out += static_cast<char>(code);
        } else if (code < 0x800) {
            out += static_cast<char>(0xC0 | (code >> 6));
            out += static_cast<char>(0x80 | (code & 0x3F));
        } else if (code < 0x10000) {
            out += static_cast<char>(0xE0 | (code >> 12));
            out += static_cast<char>(0x80 | ((code >> 6) & 0x3F));
            out += static_cast<char>(0x80 | (code & 0x3F));
        } else {
            out += static_cast<char>(0xF0 | (code >> 18));
            out += static_cast<char>(0x80 | ((code >> 12) & 0x3F));
            out += static_cast<char>(0x80 | ((code >> 6) & 0x3F));
            out += static_cast<char>(0x80 | (code & 0x3F));
        }
    }

    bool escape(std::string& out)
    {
        if (m_pos >= m_text.size()) {
            return fail("unfinished escape");
        }
        char const c = m_text[m_pos++];
        switch (c) {
        case '"': out += '"'; return true;
        case '\\': out += '\\'; return true;
        case '/': out += '/'; return true;
        case 'b': out += '\b'; return true;
        case 'f': out += '\f'; return true;
        case 'n': out += '\n'; return true;
        case 'r': out += '\r'; return true;
        case 't': out += '\t'; return true;
        case 'u': break;
        default: return fail("unknown escape");
        }
        unsigned code = 0;
        if (!hex4(code)) {
            return fail("bad \\u escape");
        }
        if (code >= 0xDC00 && code <= 0xDFFF) {
            return fail("lone low surrogate");
        }
        if (code >= 0xD800 && code <= 0xDBFF) {
            unsigned low = 0;
            if (!take('\\') || !take('u') || !hex4(low) || low < 0xDC00 || low > 0xDFFF) {
                return fail("lone high surrogate");
            }
            code = 0x10000 + ((code - 0xD800) << 10) + (low - 0xDC00);
        }
        appendUtf8(out, code);
        return true;
    }

    /// Copies one raw UTF-8 sequence that starts with the byte `lead`.
    bool rawUtf8(std::string& out, unsigned char lead)
    {
        std::size_t length = 0;
        unsigned code = 0;
        unsigned minimum = 0;
        if (lead >= 0xC2 && lead <= 0xDF) {
            length = 2;
            code = lead & 0x1Fu;
            minimum = 0x80;
        } else if (lead >= 0xE0 && lead <= 0xEF) {
            length = 3;
            code = lead & 0x0Fu;
            minimum = 0x800;
        } else if (lead >= 0xF0 && lead <= 0xF4) {
            length = 4;
            code = lead & 0x07u;
            minimum = 0x10000;
        } else {
            return fail("invalid UTF-8");
        }
        if (m_pos + length > m_text.size()) {
            return fail("truncated UTF-8");
        }
        for (std::size_t k = 1; k < length; ++k) {
            unsigned char const next = static_cast<unsigned char>(m_text[m_pos + k]);
            if ((next & 0xC0u) != 0x80u) {
                return fail("invalid UTF-8");
            }
            code = (code << 6) | (next & 0x3Fu);
        }
        if (code < minimum || code > 0x10FFFF || (code >= 0xD800 && code <= 0xDFFF)) {
            return fail("invalid UTF-8");
        }
        out.append(m_text.substr(m_pos, length));
        m_pos += length;
        return true;
    }

    bool parseString(std::string& out)
    {
        ++m_pos;
        while (m_pos < m_text.size()) {
            unsigned char const c = static_cast<unsigned char>(m_text[m_pos]);
            if (c == '"') {
                ++m_pos;
                return true;
            }
            if (c < 0x20) {
                return fail("control character in a string");
            }
            if (c == '\\') {
                ++m_pos;
                if (!escape(out)) {
                    return false;
                }
            } else if (c >= 0x80) {
                if (!rawUtf8(out, c)) {
                    return false;
                }
            } else {
                out += static_cast<char>(c);
                ++m_pos;
            }
        }
        return fail("unterminated string");
    }

    std::string_view m_text;
    std::size_t m_pos = 0;
    std::string m_error;
};

} // namespace

std::optional<JsonValue> parseJson(std::string_view text, std::string* error)
{
    Reader reader(text);
    std::optional<JsonValue> value = reader.document();
    if (!value && error != nullptr) {
        *error = reader.error();
    }
    return value;
}

} // namespace verra_test
