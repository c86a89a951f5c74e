#pragma once
// A strict JSON reader (RFC 8259) for checking the program's --json output.

#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace verra_test {

/// One JSON value and, for arrays and objects, everything inside it.
struct JsonValue {
    /// The kinds of JSON values.
    enum class Kind { Null, Bool, Number, String, Array, Object };
    /// What this value is; only the fields of its kind are filled.
    Kind kind = Kind::Null;
    /// The value of a Bool.
    bool boolean = false;
    /// The value of a Number.
    double number = 0.0;
    /// The decoded text of a String (UTF-8).
    std::string text;
    /// The items of an Array, in order.
    std::vector<JsonValue> items;
    /// The members of an Object, in their order of appearance.
    std::vector<std::pair<std::string, JsonValue>> members;

    /// The member `key` of an object, or null (also for other kinds).
    JsonValue const* member(std::string_view key) const;
    /// The texts of an array of strings; empty when any item is no string.
    std::vector<std::string> strings() const;
};

/// The value of the whole `text`, or nothing when it is not valid JSON:
/// bad syntax, a control character or invalid UTF-8 inside a string, a lone
/// surrogate escape, an object key given twice, or anything after the value.
/// `error` (when not null) then tells where.
std::optional<JsonValue> parseJson(std::string_view text, std::string* error);

} // namespace verra_test
