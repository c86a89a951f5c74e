// The strict JSON reader that the tool's tests rely on: it must refuse what
// is not JSON, or the tests of --json could not fail.

#include "json_value.h"

#include <gtest/gtest.h>

namespace verra_test {
namespace {

TEST(JsonReader, ReadsNestedDocument)
{
    auto const value = parseJson(R"( {"a": [1, -2.5e1, true, false, null], "b": {"c": "d"}} )", nullptr);
    ASSERT_TRUE(value);
    JsonValue const* a = value->member("a");
    ASSERT_NE(a, nullptr);
    ASSERT_EQ(a->items.size(), 5u);
    EXPECT_EQ(a->items[1].number, -25.0);
    EXPECT_TRUE(a->items[2].boolean);
    EXPECT_FALSE(a->items[3].boolean);
    EXPECT_EQ(a->items[4].kind, JsonValue::Kind::Null);
    ASSERT_NE(value->member("b"), nullptr);
    EXPECT_EQ(value->member("b")->member("c")->text, "d");
}

TEST(JsonReader, DecodesEscapesAndSurrogatePairs)
{
    auto const value = parseJson(R"(["q\"b\\s\/t\tn\nu\u00e9\ud83d\ude00"])", nullptr);
    ASSERT_TRUE(value);
    EXPECT_EQ(value->items[0].text, "q\"b\\s/t\tn\nu\xC3\xA9\xF0\x9F\x98\x80");
}

TEST(JsonReader, RefusesWhatIsNotJson)
{
    char const* const invalid[] = {
        "",
        "[1,]",
        "{\"a\":1,}",
        "{\"a\":1 \"b\":2}",
        "[\"tab\there\"]",
        "[\"\xFF\"]",
        "[\"\xC3\"]",
        "[\"\\ud800\"]",
        "[\"\\x41\"]",
        "{\"a\":1,\"a\":2}",
        "[01]",
        "[1] [2]",
        "{'a':1}",
        "[nan]",
    };
    for (char const* text : invalid) {
        std::string error;
        EXPECT_FALSE(parseJson(text, &error)) << text;
        EXPECT_FALSE(error.empty()) << text;
    }
}

} // namespace
} // namespace verra_test
