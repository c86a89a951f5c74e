// Fuzz target: orv::String's text operations and Path::ext on arbitrary bytes.
//
// Input: four texts taken one after the other with FuzzedDataProvider's
// ConsumeRandomLengthString (a backslash followed by any other byte ends a
// text; "\\\\" is one backslash): the text, a second text to compare with,
// the characters trimChars removes at the start, and those it removes at the
// end. Any byte may appear, NUL included.

#include "fuzz_check.h"

#include <orv/path.h>

#include <fuzzer/FuzzedDataProvider.h>

#include <algorithm>
#include <cstring>

namespace {

bool isBlank(char c) { return c != '\0' && std::strchr(" \t\n\v\f\r", c) != nullptr; }
bool allBlank(std::string_view text) { return std::all_of(text.begin(), text.end(), isBlank); }
int sign(int value) { return (value > 0) - (value < 0); }

} // namespace

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size)
{
    FuzzedDataProvider input(data, size);
    std::string bytes[4];
    orv::String texts[4]; // the text, the other text, trimChars' start and end sets
    for (int i = 0; i < 4; ++i) {
        bytes[i] = input.ConsumeRandomLengthString();
        // A length of 0 would mean "up to the first NUL": the empty text takes the default constructor.
        texts[i] = bytes[i].empty() ? orv::String() : orv::String(bytes[i].data(), bytes[i].size());
    }
    orv::String const& text = texts[0];
    std::string_view const source = text.view();
    FUZZ_CHECK(source == bytes[0] && orv::String(std::string_view(bytes[0])) == text &&
                   std::strlen(text.buf()) == std::min(bytes[0].find('\0'), bytes[0].size()),
               "a String holds exactly its bytes, and buf() stops at the first NUL");

    // trim leaves no blank at the asked ends and cuts nothing else: the text keeps what it returns.
    orv::String const both = text.trim(true, true);
    std::string_view const t = both.view();
    FUZZ_CHECK((t.empty() || (!isBlank(t.front()) && !isBlank(t.back()))) &&
                   source.find(t) != std::string_view::npos && allBlank(source.substr(0, source.find(t))) &&
                   text.trim(true, false).trim(false, true) == both && text.trim(false, true).trim(true, false) == both,
               "trim cuts the blanks at either end, one end at a time or both, and only them");

    // trimChars leaves neither set at its end, cuts only the ends, and is idempotent.
    orv::String const bare = text.trimChars(texts[2], texts[3]);
    std::string_view const b = bare.view();
    FUZZ_CHECK(b.empty() ||
                   (bytes[2].find(b.front()) == std::string::npos && bytes[3].find(b.back()) == std::string::npos),
               "trimChars leaves no character of the first set at the start, none of the second at the end");
    FUZZ_CHECK(source.find(b) != std::string_view::npos && bare.trimChars(texts[2], texts[3]) == bare,
               "trimChars removes its sets' characters at the ends only");

    // toLower, compareNoCase, == and hash agree with one another.
    orv::String const lower = text.toLower(true);
    orv::String const& other = texts[1];
    int const order = text.compareNoCase(other);
    FUZZ_CHECK(lower.length() == text.length() && lower.toLower(true) == lower && text.toLower(false) == lower &&
                   text.compareNoCase(lower) == 0,
               "toLower keeps the length, is idempotent and equals the text apart from case");
    FUZZ_CHECK(sign(order) == -sign(other.compareNoCase(text)) && (order == 0) == (lower == other.toLower(true)),
               "compareNoCase is antisymmetric and 0 exactly when the lower cases are equal");
    FUZZ_CHECK((text == other) == (source == other.view()) && (text == other) != (text != other) &&
                   (text != other || text.hash() == other.hash()),
               "== compares the bytes, != negates it, and equal texts hash equal");

    // Path::ext: '.' and the bare extension, a suffix of the name without '/', its one dot first.
    orv::String const ext[2] = {orv::Path::ext(text, true), orv::Path::ext(text, false)};
    std::string_view const dotted = ext[0].view();
    FUZZ_CHECK((dotted.empty() ? ext[1].isEmpty() : ext[1].view() == dotted.substr(1)) &&
                   source.size() >= dotted.size() && source.substr(source.size() - dotted.size()) == dotted &&
                   dotted.find('/') == std::string_view::npos && (dotted.empty() || dotted.rfind('.') == 0),
               "ext is the name's suffix from its last dot, with or without the dot");
    return 0;
}
