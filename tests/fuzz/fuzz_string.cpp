// Fuzz target: orv::String's text operations and Path::ext on arbitrary bytes.
//
// Input: four texts taken one after the other with FuzzedDataProvider's
// ConsumeRandomLengthString (a backslash followed by any other byte ends a
// text; "\\\\" is one backslash): the main text, a second text to compare
// with, the characters trimChars removes at the start, and those it removes
// at the end. Every text may hold any byte, NUL included.

#include "fuzz_check.h"

#include <orv/path.h>
#include <orv/string.h>

#include <fuzzer/FuzzedDataProvider.h>

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string>
#include <string_view>

namespace {

using orv::Path;
using orv::String;

bool isBlank(char c)
{
    return c == ' ' || c == '\t' || c == '\n' || c == '\v' || c == '\f' || c == '\r';
}

/// The String of exactly these bytes. A length of 0 would mean "up to the
/// first NUL", so the empty text takes the default constructor.
String fromBytes(std::string const& bytes)
{
    return bytes.empty() ? String() : String(bytes.data(), bytes.size());
}

int signOf(int value) { return (value > 0) - (value < 0); }

char lowerAscii(char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; }

std::string lowerAscii(std::string_view text)
{
    std::string result(text);
    for (char& c : result) {
        c = lowerAscii(c);
    }
    return result;
}

/// Reference: the sign of a byte-wise comparison of the ASCII-lowered texts
/// (bytes unsigned, a proper prefix ordered first).
int foldedCompare(std::string_view a, std::string_view b)
{
    std::string const la = lowerAscii(a);
    std::string const lb = lowerAscii(b);
    std::size_t const common = la.size() < lb.size() ? la.size() : lb.size();
    for (std::size_t i = 0; i < common; ++i) {
        int const ca = static_cast<unsigned char>(la[i]);
        int const cb = static_cast<unsigned char>(lb[i]);
        if (ca != cb) {
            return ca < cb ? -1 : 1;
        }
    }
    if (la.size() == lb.size()) {
        return 0;
    }
    return la.size() < lb.size() ? -1 : 1;
}

/// Reference: 64-bit FNV-1a over the bytes.
std::uint64_t fnv1a(std::string_view text)
{
    std::uint64_t h = 0xcbf29ce484222325ull;
    for (char const c : text) {
        h ^= static_cast<unsigned char>(c);
        h *= 0x100000001b3ull;
    }
    return h;
}

/// Reference for Path::ext on POSIX: the file name is what follows the last
/// '/'; its extension runs from its last '.', except that a name whose only
/// dot is its first character (".profile"), and the names "." and "..", have
/// none.
std::string referenceExt(std::string_view name, bool withDot)
{
    std::size_t const slash = name.rfind('/');
    std::string_view const file = slash == std::string_view::npos ? name : name.substr(slash + 1);
    if (file == "." || file == "..") {
        return std::string();
    }
    std::size_t const dot = file.rfind('.');
    if (dot == std::string_view::npos || dot == 0) {
        return std::string();
    }
    return std::string(file.substr(withDot ? dot : dot + 1));
}

bool endsWith(std::string_view text, std::string_view suffix)
{
    return text.size() >= suffix.size() && text.substr(text.size() - suffix.size()) == suffix;
}

/// The same bytes reach the same String whichever way they are built.
void checkConstruction(std::string const& bytes)
{
    String const exact = fromBytes(bytes);
    String const viewed{std::string_view(bytes)};
    FUZZ_CHECK(exact.view() == bytes, "String(text, length) holds exactly the given bytes");
    FUZZ_CHECK(viewed.view() == bytes, "String(string_view) holds exactly the given bytes");
    FUZZ_CHECK(exact.length() == bytes.size() && exact.isEmpty() == bytes.empty(), "length and isEmpty");
    FUZZ_CHECK(exact == viewed && !(exact != viewed), "texts built two ways compare equal");
    FUZZ_CHECK(exact.hash() == viewed.hash(), "texts built two ways hash equal");
    FUZZ_CHECK(exact.hash() == fnv1a(bytes), "hash is FNV-1a of the bytes");
    FUZZ_CHECK(exact.compareNoCase(viewed) == 0 && viewed.compareNoCase(exact) == 0,
               "equal texts compare equal without case");

    String const copy = exact; // shares the body
    FUZZ_CHECK(copy == exact && copy.hash() == exact.hash(), "a copy equals its original");

    // buf() is NUL-terminated and stops at the first NUL of the text.
    std::size_t const nul = bytes.find('\0');
    std::size_t const visible = nul == std::string::npos ? bytes.size() : nul;
    char const* const chars = exact.buf();
    FUZZ_CHECK(chars != nullptr, "buf() is never null");
    FUZZ_CHECK(std::strlen(chars) == visible && std::memcmp(chars, bytes.data(), visible) == 0,
               "buf() gives the bytes up to the first NUL");

    // Through a NUL-terminated C string: the bytes before the first NUL.
    std::string const cText = bytes.substr(0, visible);
    String const terminated(bytes.c_str(), 0);
    String assigned;
    assigned = bytes.c_str();
    FUZZ_CHECK(terminated.view() == cText && assigned.view() == cText,
               "a C string gives the text up to its NUL");
    FUZZ_CHECK(terminated == cText.c_str() && (nul != std::string::npos || exact == bytes.c_str()),
               "operator==(char const*) compares the texts");
    FUZZ_CHECK(terminated.hash() == fnv1a(cText), "C-string text hashes as its bytes");
}

/// trim: removes exactly the blanks at the requested ends, and only those.
void checkTrim(String const& text)
{
    std::string_view const source = text.view();
    String const both = text.trim(true, true);
    std::string_view const t = both.view();
    FUZZ_CHECK(t.empty() || (!isBlank(t.front()) && !isBlank(t.back())), "trim leaves no blank at either end");
    FUZZ_CHECK(both.trim(true, true) == both, "trim is idempotent");

    std::size_t first = 0;
    while (first < source.size() && isBlank(source[first])) {
        ++first;
    }
    std::size_t last = source.size();
    while (last > first && isBlank(source[last - 1])) {
        --last;
    }
    FUZZ_CHECK(t == source.substr(first, last - first), "trim removes the blank runs at the ends and nothing else");

    String const front = text.trim(true, false);
    String const back = text.trim(false, true);
    FUZZ_CHECK(front.view() == source.substr(first), "trim(start only) removes only the leading blanks");
    std::size_t end = source.size();
    while (end > 0 && isBlank(source[end - 1])) {
        --end;
    }
    FUZZ_CHECK(back.view() == source.substr(0, end), "trim(end only) removes only the trailing blanks");
    FUZZ_CHECK(front.trim(false, true) == both && back.trim(true, false) == both,
               "trimming one end then the other equals trimming both");
    FUZZ_CHECK(text.trim(false, false) == text, "trim of neither end changes nothing");
}

/// trimChars: the result is the text without the longest run of characters
/// of `atStart` at its start, then without the longest run of characters of
/// `atEnd` at the end of what remains.
void checkTrimChars(String const& text, String const& atStart, String const& atEnd)
{
    std::string_view const source = text.view();
    std::string_view const leading = atStart.view();
    std::string_view const trailing = atEnd.view();
    String const result = text.trimChars(atStart, atEnd);
    std::string_view const r = result.view();

    FUZZ_CHECK(r.empty() || leading.find(r.front()) == std::string_view::npos,
               "trimChars result does not start with a character of the first set");
    FUZZ_CHECK(r.empty() || trailing.find(r.back()) == std::string_view::npos,
               "trimChars result does not end with a character of the second set");

    std::size_t first = 0;
    while (first < source.size() && leading.find(source[first]) != std::string_view::npos) {
        ++first;
    }
    std::size_t last = source.size();
    while (last > first && trailing.find(source[last - 1]) != std::string_view::npos) {
        --last;
    }
    FUZZ_CHECK(r == source.substr(first, last - first), "trimChars removes the matching runs and nothing else");
    FUZZ_CHECK(result.trimChars(atStart, atEnd) == result, "trimChars is idempotent");

    String const blanks(" \t\n\v\f\r", 0);
    FUZZ_CHECK(text.trimChars(blanks, blanks) == text.trim(true, true), "trimChars of the blanks is trim");
}

/// toLower: only A-Z change; idempotent; equal to the text apart from case.
void checkLower(String const& text)
{
    String const lower = text.toLower(true);
    FUZZ_CHECK(lower.view() == lowerAscii(text.view()), "toLower(ascii) lowers A-Z and keeps every other byte");
    FUZZ_CHECK(lower.toLower(true) == lower, "toLower is idempotent");
    FUZZ_CHECK(text.compareNoCase(lower) == 0 && lower.compareNoCase(text) == 0,
               "a text equals its lower case apart from case");
    // No locale is ever set in this process, so the C locale's tolower
    // lowers exactly A-Z too.
    String const localeLower = text.toLower(false);
    FUZZ_CHECK(localeLower == lower, "toLower(C locale) equals toLower(ascii)");
    FUZZ_CHECK(localeLower.toLower(false) == localeLower, "toLower(C locale) is idempotent");
}

/// compareNoCase: a case-folded byte comparison, antisymmetric in sign.
void checkCompare(String const& a, String const& b)
{
    int const ab = a.compareNoCase(b);
    int const ba = b.compareNoCase(a);
    FUZZ_CHECK((ab == 0) == (ba == 0), "compareNoCase: a vs b is 0 iff b vs a is 0");
    FUZZ_CHECK(signOf(ab) == -signOf(ba), "compareNoCase is antisymmetric in sign");
    FUZZ_CHECK(signOf(ab) == foldedCompare(a.view(), b.view()), "compareNoCase orders as a case-folded byte compare");
    FUZZ_CHECK((ab == 0) == (a.toLower(true) == b.toLower(true)), "compareNoCase is 0 iff the lower cases are equal");
    FUZZ_CHECK((a == b) == (a.view() == b.view()) && (a != b) == !(a == b), "operator== compares the bytes");
    FUZZ_CHECK(!(a == b) || (ab == 0 && a.hash() == b.hash()), "equal texts compare and hash equal");
    FUZZ_CHECK(a.compareNoCase(a) == 0, "compareNoCase is reflexive");
}

/// Path::ext: the extension of the last path element, with or without its dot.
void checkExt(String const& name)
{
    String const bare = Path::ext(name, false);
    String const dotted = Path::ext(name, true);
    std::string_view const e = bare.view();
    std::string_view const d = dotted.view();
    FUZZ_CHECK(e.find('/') == std::string_view::npos && d.find('/') == std::string_view::npos,
               "ext never contains '/'");
    FUZZ_CHECK(e.empty() || e.front() != '.', "ext without the dot never starts with '.'");
    FUZZ_CHECK(d.empty() || d.front() == '.', "ext with the dot starts with '.' or is empty");
    FUZZ_CHECK(d.empty() ? e.empty() : d.substr(1) == e, "ext with the dot is '.' then ext without it");
    FUZZ_CHECK(endsWith(name.view(), d), "ext is a suffix of the name");
    FUZZ_CHECK(d.empty() || d.find('.', 1) == std::string_view::npos, "ext holds a single dot");
    FUZZ_CHECK(d == referenceExt(name.view(), true) && e == referenceExt(name.view(), false),
               "ext follows the last element's last dot, leading dots excepted");
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size)
{
    FuzzedDataProvider input(data, size);
    std::string const text = input.ConsumeRandomLengthString();
    std::string const other = input.ConsumeRandomLengthString();
    std::string const startSet = input.ConsumeRandomLengthString();
    std::string const endSet = input.ConsumeRandomLengthString();

    checkConstruction(text);
    checkConstruction(other);

    String const a = fromBytes(text);
    String const b = fromBytes(other);
    checkTrim(a);
    checkTrimChars(a, fromBytes(startSet), fromBytes(endSet));
    checkLower(a);
    checkCompare(a, b);
    checkCompare(a, a.toLower(true));
    checkCompare(a.trim(true, true), b.trim(true, true));
    checkExt(a);
    checkExt(b);
    return 0;
}
