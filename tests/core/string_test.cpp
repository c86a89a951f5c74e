#include <orv/string.h>

#include <gtest/gtest.h>

#include <cstring>
#include <ostream>
#include <string>

// Lets failure messages show a String's text.
namespace orv {
inline void PrintTo(String const& text, std::ostream* out) { *out << '"' << text.view() << '"'; }
} // namespace orv

namespace {

using orv::String;

TEST(String, ConstructsFromWholeTextOrGivenLength)
{
    EXPECT_EQ(String("sRGB").view(), "sRGB");
    EXPECT_EQ(String("sRGB", 2).view(), "sR");
    EXPECT_EQ(String(std::string_view("Rec709")).length(), 6u);

    String const withNul("a\0b", 3);
    EXPECT_EQ(withNul.length(), 3u);
    EXPECT_STREQ(withNul.buf(), "a");
}

TEST(String, EmptyTextHasNoBodyAndAnEmptyBuffer)
{
    for (String const& empty : {String(), String(""), String(static_cast<char const*>(nullptr)),
                                String(std::string_view())}) {
        EXPECT_TRUE(empty.isEmpty());
        EXPECT_FALSE(empty.hasBody());
        ASSERT_NE(empty.buf(), nullptr);
        EXPECT_STREQ(empty.buf(), "");
    }
}

TEST(String, AssignmentChangesOnlyThisHandle)
{
    String const empty;
    String copyOfEmpty = empty;
    copyOfEmpty = "sRGB";
    EXPECT_TRUE(empty.isEmpty());
    EXPECT_EQ(copyOfEmpty, "sRGB");

    String const linear("linear");
    String copy = linear;
    copy = "";
    EXPECT_EQ(linear, "linear");
    EXPECT_TRUE(copy.isEmpty());
}

TEST(String, AssignmentFromItsOwnTextWorks)
{
    String name("$OCIO");
    String const keep = name;
    name = name.buf() + 1;
    EXPECT_EQ(name, "OCIO");
    EXPECT_EQ(keep, "$OCIO");
}

TEST(String, ComparisonsWithAndWithoutCase)
{
    String const mixed("sRGB");
    String const upper("SRGB");
    EXPECT_EQ(mixed.compareNoCase(upper), 0);
    EXPECT_FALSE(mixed == upper);
    EXPECT_TRUE(mixed != "default");
    EXPECT_TRUE(mixed == "sRGB");
    EXPECT_TRUE(String() == "");
    EXPECT_TRUE(String() == static_cast<char const*>(nullptr));

    EXPECT_LT(String("abc").compareNoCase(String("ABD")), 0);
    EXPECT_GT(String("ABD").compareNoCase(String("abc")), 0);
    EXPECT_LT(String("ab").compareNoCase(String("AB c")), 0);
    EXPECT_NE(String("a").compareNoCase(String()), 0);
}

TEST(String, TrimRemovesWhiteSpaceAndLineEnds)
{
    String const line(" \t/configs/studio.ocio\r\n");
    EXPECT_EQ(line.trim(true, true), "/configs/studio.ocio");
    EXPECT_EQ(line.trim(true, false), "/configs/studio.ocio\r\n");
    EXPECT_EQ(line.trim(false, true), " \t/configs/studio.ocio");
    EXPECT_EQ(String("a b\fc\v").trim(true, true), "a b\fc");
    EXPECT_TRUE(String(" \r\n\t\v\f ").trim(true, true).isEmpty());
    // The original keeps its text.
    EXPECT_EQ(line, " \t/configs/studio.ocio\r\n");
}

TEST(String, TrimCharsStripsTheGivenSetsAtEachEnd)
{
    struct Case {
        char const* text;
        char const* expected;
    };
    for (Case const& c : {Case{"$OCIO", "OCIO"}, Case{"%OCIO%", "OCIO"}, Case{"OCIO", "OCIO"},
                          Case{"$", ""}, Case{"/tmp/a.ocio", "/tmp/a.ocio"},
                          Case{"$%$OCIO%%", "OCIO"}, Case{"OCIO$", "OCIO$"}}) {
        String const text(c.text);
        EXPECT_EQ(text.trimChars(String("$%"), String("%")), c.expected) << c.text;
        EXPECT_EQ(text, c.text);
    }
}

TEST(String, ToLowerFoldsAsciiLettersOnly)
{
    String const name("ACEScg Rec.709");
    EXPECT_EQ(name.toLower(true), "acescg rec.709");
    EXPECT_EQ(name.toLower(false), "acescg rec.709");
    EXPECT_EQ(name, "ACEScg Rec.709");
    EXPECT_EQ(String("\xC3\x89T\xC3\x89").toLower(true), "\xC3\x89t\xC3\x89");
}

TEST(String, UnchangedResultsShareTheBody)
{
    String const lower("srgb");
    EXPECT_EQ(lower.toLower(true).body(), lower.body());
    EXPECT_EQ(lower.trim(true, true).body(), lower.body());
    EXPECT_EQ(lower.trimChars(String("$%"), String("%")).body(), lower.body());

    String const changed = String("sRGB").toLower(true);
    EXPECT_NE(changed.body(), lower.body());
    EXPECT_EQ(changed, lower);
}

TEST(String, HashIsFnv1a)
{
    EXPECT_EQ(String().hash(), 0xcbf29ce484222325ull);
    EXPECT_EQ(String("a").hash(), 0xaf63dc4c8601ec8cull);
    EXPECT_EQ(String("foobar").hash(), 0x85944171f73967e8ull);
    EXPECT_NE(String("sRGB").hash(), String("srgb").hash());
}

TEST(String, EqualTextsBuiltDifferentlyHashEqual)
{
    String const literal("Rec709");
    String const formatted = String::format("%s%d", "Rec", 709);
    String const cut("Rec709 extra", 6);
    String const lowered = String("REC709").toLower(true);
    ASSERT_NE(formatted.body(), literal.body());
    EXPECT_EQ(formatted.hash(), literal.hash());
    EXPECT_EQ(cut.hash(), literal.hash());
    EXPECT_NE(lowered.hash(), literal.hash());
    EXPECT_EQ(lowered.hash(), String("rec709").hash());
}

TEST(String, FormatWritesPrintfTextOfAnyLength)
{
    EXPECT_EQ(String::format("Using OCIO config %s according to %s.", "/a.ocio", "$OCIO"),
              "Using OCIO config /a.ocio according to $OCIO.");
    EXPECT_EQ(String::format("%03d|%.2f", 7, 0.5), "007|0.50");
    EXPECT_TRUE(String::format("%s", "").isEmpty());

    std::string const longText(10000, 'x');
    String const formatted = String::format("<%s>", longText.c_str());
    EXPECT_EQ(formatted.length(), 10002u);
    EXPECT_EQ(std::strlen(formatted.buf()), 10002u);
    EXPECT_EQ(formatted.view().substr(1, 10000), longText);
}

} // namespace
