#include <orv/string_vector.h>

#include <gtest/gtest.h>

#include <ostream>
#include <utility>
#include <vector>

// Lets failure messages show a String's text.
namespace orv {
inline void PrintTo(String const& text, std::ostream* out) { *out << '"' << text.view() << '"'; }
} // namespace orv

namespace {

using orv::String;
using orv::StringVector;

std::vector<std::string_view> items(StringVector const& list)
{
    std::vector<std::string_view> out;
    for (String const& item : list) {
        out.push_back(item.view());
    }
    return out;
}

using Views = std::vector<std::string_view>;

TEST(StringVector, StartsEmptyAndKeepsOrder)
{
    StringVector const empty;
    EXPECT_TRUE(empty.empty());
    EXPECT_EQ(empty.begin(), empty.end());

    StringVector const list{String("linear"), String("sRGB"), String("Rec709")};
    EXPECT_EQ(list.size(), 3u);
    EXPECT_EQ(items(list), (Views{"linear", "sRGB", "Rec709"}));
    EXPECT_EQ(list[1], "sRGB");
}

TEST(StringVector, CopiesShareOneList)
{
    StringVector const original;
    StringVector copy = original;
    copy.push_back(String("ACEScg"));
    EXPECT_EQ(items(original), (Views{"ACEScg"}));
    copy.clear();
    EXPECT_TRUE(original.empty());
}

TEST(StringVector, DupIsIndependent)
{
    StringVector original{String("a"), String("b")};
    StringVector duplicate = original.dup();
    duplicate.push_back(String("c"));
    original.push_back(String("d"));
    EXPECT_EQ(items(original), (Views{"a", "b", "d"}));
    EXPECT_EQ(items(duplicate), (Views{"a", "b", "c"}));
    // The elements themselves are the same String handles.
    EXPECT_EQ(duplicate[0].body(), original[0].body());
}

TEST(StringVector, ContainsExactlyOrIgnoringCase)
{
    StringVector const ignored{String("default"), String("rgb"), String("RGB")};
    EXPECT_TRUE(ignored.contains(String("RGB"), false));
    EXPECT_FALSE(ignored.contains(String("Rgb"), false));
    EXPECT_TRUE(ignored.contains(String("Rgb"), true));
    EXPECT_TRUE(ignored.contains(String("DEFAULT"), true));
    EXPECT_FALSE(ignored.contains(String("linear"), true));
    EXPECT_FALSE(ignored.contains(String(), true));
}

TEST(StringVector, MovedFromListStillBehaves)
{
    StringVector source{String("x")};
    StringVector const target(std::move(source));
    // NOLINTBEGIN(bugprone-use-after-move): a moved-from list must stay usable
    EXPECT_TRUE(source.empty());
    EXPECT_EQ(source.begin(), source.end());
    EXPECT_FALSE(source.contains(String("x"), false));
    EXPECT_TRUE(source.dup().empty());
    source.clear();
    source.push_back(String("y"));
    EXPECT_EQ(items(source), (Views{"y"}));
    // NOLINTEND(bugprone-use-after-move)
    EXPECT_EQ(items(target), (Views{"x"}));
}

} // namespace
