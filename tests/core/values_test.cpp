// The value types: handle lifetimes, String, StringVector, the views hash map,
// the owning pixel array and the image handle.

#include <orv/ds/hash_map.h>
#include <orv/string_vector.h>
#include <orv/verra/vector2d.h>
#include <orv/verra_sdk/image.h>

#include <gmock/gmock.h>

#include <algorithm>
#include <array>
#include <new>
#include <string>
#include <utility>
#include <vector>

namespace {

using orv::String;
using orv::StringVector;
using Map = orv::ds::HashMap<String, StringVector>;
using ::testing::Each;
using ::testing::ElementsAre;
using ::testing::FieldsAre;

/// How many handles share the body of `h`.
int refs(orv::RefersTo<orv::IRefCounted> const& h)
{
    return static_cast<orv::RefCounted const*>(h.body())->refCount();
}

TEST(Handle, CopiesShareAndCountTheBodyMovesDoNot)
{
    String const first("ACES");
    String solo("solo");
    String& self = solo;
    solo = self; // retains before it releases: the count never reaches zero
    String other("other");
    {
        String const copy = first;
        other = copy;
        EXPECT_EQ(refs(first), 3);
    }
    String const none;
    String target = none;
    target = std::move(other);
    EXPECT_THAT(std::tuple(refs(first), target.body(), other.hasBody()), // NOLINT(bugprone-use-after-move)
                FieldsAre(2, first.body(), false));
    target = none;
    EXPECT_THAT(std::tuple(refs(first), target.hasBody(), solo.view()), FieldsAre(1, false, "solo"));
}

TEST(String, HoldsItsOwnBytesComparesAndHashesThem)
{
    char const* const null = nullptr;
    for (String const& empty :
         {String(), String(""), String(null), String(std::string_view()), String::format("%s", "")}) {
        EXPECT_THAT(std::tuple(empty.isEmpty(), empty.hasBody(), std::string(empty.buf())), FieldsAre(true, false, ""));
    }
    String name("$OCIO");
    String const keep = name;
    name = name.buf() + 1; // from its own text, leaving the copy's text alone
    String const cut("a\0b", 3);
    EXPECT_THAT(std::tuple(name.view(), keep.view(), cut.view(), std::string(cut.buf())),
                FieldsAre("OCIO", "$OCIO", std::string_view("a\0b", 3), "a"));
    // compareNoCase folds ASCII letters only and orders a prefix first; == is exact.
    auto const order = [](char const* a, char const* b) {
        int const c = String(a).compareNoCase(String(b));
        return (c > 0) - (c < 0);
    };
    EXPECT_THAT((std::vector{order("sRGB", "SRGB"), order("@", "`"), order("ab", "AB c"), order("AB c", "ab")}),
                ElementsAre(0, -1, -1, 1));
    EXPECT_NE(String("sRGB"), String("SRGB"));
    // 64-bit FNV-1a of the bytes, however the text was made.
    EXPECT_THAT((std::vector{String("\xff").hash(), String("Rec709 extra", 6).hash()}),
                ElementsAre(0xaf64724c8602eb6eull, 0x83bf6bbf4b1fa285ull));
}

TEST(String, TransformsGiveNewStringsOrShareAnUnchangedBody)
{
    // text, trim(both), trim(start), trim(end), toLower, trimChars("$%", "%")
    using Case = std::array<char const*, 6>;
    for (auto const& [chars, both, start, end, lower, bare] :
         {Case{" \t\vA b\f\r\n", "A b", "A b\f\r\n", " \t\vA b", " \t\va b\f\r\n", " \t\vA b\f\r\n"},
          Case{"%OCIO%\v", "%OCIO%", "%OCIO%\v", "%OCIO%", "%ocio%\v", "OCIO%\v"},
          Case{"$%$ocio%%", "$%$ocio%%", "$%$ocio%%", "$%$ocio%%", "$%$ocio%%", "ocio"},
          Case{"@AZ[`z{\xC9", "@AZ[`z{\xC9", "@AZ[`z{\xC9", "@AZ[`z{\xC9", "@az[`z{\xC9", "@AZ[`z{\xC9"},
          Case{" \r\n\t\v\f ", "", "", "", " \r\n\t\v\f ", " \r\n\t\v\f "}, Case{"", "", "", "", "", ""}}) {
        String const text(chars);
        std::pair<String, std::string_view> const results[] = {
            {text.trim(true, true), both}, {text.trim(true, false), start},
            {text.trim(false, true), end}, {text.toLower(true), lower},
            {text.toLower(false), lower},  {text.trimChars(String("$%"), String("%")), bare}};
        for (auto const& [result, expected] : results) {
            EXPECT_EQ(result.view(), expected) << '"' << chars << '"';
            EXPECT_EQ(result.body() == text.body(), result.view() == chars) << '"' << chars << '"';
        }
        EXPECT_EQ(text.view(), chars);
    }
}

TEST(StringVector, CopiesShareOneListDupIsIndependent)
{
    StringVector original;
    StringVector copy = original;
    copy.push_back(String("linear"));
    StringVector duplicate = original.dup();
    duplicate.push_back(String("ACEScg"));
    copy.clear();
    EXPECT_THAT(std::tuple(original.empty(), original.begin() == original.end(), duplicate.size(), duplicate[1].view()),
                FieldsAre(true, true, 2u, "ACEScg"));
}

TEST(HashMap, SetFindCopyAndClear)
{
    Map source;
    EXPECT_THAT(std::tuple(source.size(), source.find(String()), source.begin() == source.end()),
                FieldsAre(0u, nullptr, true));
    StringVector const views{String("Raw")};
    for (unsigned i = 0; i < 1300; ++i) { // nine keys or more to a bucket
        String const key = String::format("display%u", i);
        StringVector const* const set = &source.set(key, views);
        EXPECT_THAT(std::tuple(set, source.size()), FieldsAre(source.find(key), i + 1)) << i;
    }
    String const key = source.bucket(53).data[0].key; // "display71"
    source.set(String::format("display%d", 71), StringVector{String("Film")}); // replaces the value only
    EXPECT_THAT(std::tuple(source.size(), refs(views), source.find(key)->size(), source.bucket(53).data[0].key.body(),
                           (*source.find(key))[0].view()),
                FieldsAre(1300u, 1300, 1u, key.body(), "Film"));
    {
        Map copy(source);
        EXPECT_EQ(refs(views), 1 + 2 * 1299); // one copy per node
        copy.find(String("display7"))->push_back(String("Log")); // a shared list changes for both maps
        copy.set(String("display7"), StringVector{String("ACES")}); // a replaced value, in the copy only
        EXPECT_EQ((*copy.find(String("display7")))[0], "ACES");
    }
    EXPECT_THAT(std::tuple(refs(views), views.size()), FieldsAre(1300, 2u)); // display7's shared list, in the source
    source.clear();
    EXPECT_THAT(std::tuple(source.size(), refs(views), source.find(key), source.begin() == source.end()),
                FieldsAre(0u, 1, nullptr, true));
    source.set(key, views); // and the map fills again
    EXPECT_THAT(std::tuple(source.size(), source.find(key)), FieldsAre(1u, &source.bucket(53).data[0].value));
}

TEST(Vector2d, AllocatePlacesUpTo32BitCountsOrStaysEmpty)
{
    using Case = std::tuple<std::uint32_t, std::uint32_t, bool>;
    for (auto const& [width, height, placed] : {Case{3, 2, true}, Case{0, 5, true}, Case{65536, 65536, false}}) {
        orv::verra::Vector2d<orv::verra::Rgba8, true> pixels;
        orv::verra::Vector2d<orv::verra::Rgba8, true> moved;
        moved.allocate(1, 1);
        pixels.allocate(1, 1);
        pixels.allocate(width, height); // releases the first storage
        moved = std::move(pixels); // takes it over, releasing its own
        EXPECT_THAT(std::tuple(moved.data != nullptr, moved.width, moved.height, moved.count, pixels.empty(),
                               pixels.count), // NOLINT(bugprone-use-after-move)
                    FieldsAre(placed, placed ? width : 0u, placed ? height : 0u, moved.width * moved.height, true, 0u))
            << width << "x" << height;
    }
}

TEST(Image, CreateGivesZeroedSharedPixelsOrAnInvalidImage)
{
    using orv::verra_sdk::Image;
    using Case = std::tuple<int, int, bool>;
    for (auto const& [width, height, valid] :
         {Case{7, 3, true}, Case{0, 5, true}, Case{-1, 4, false}, Case{0, -1, false}, Case{65536, 65536, false}}) {
        Image const image = Image::create(width, height);
        EXPECT_THAT(
            std::tuple(image.isValid(), image.hasBody(), image.rgba8() != nullptr, image.width(), image.height()),
            FieldsAre(valid, valid, valid, valid ? width : 0, valid ? height : 0))
            << width << "x" << height;
    }
    Image first = Image::create(7, 3);
    Image const second = first;
    first.rgba8()[20].a = 255;
    first = Image();
    auto const set = [](orv::verra::Rgba8 const& pixel) { return pixel.r || pixel.g || pixel.b || pixel.a; };
    EXPECT_THAT(std::tuple(std::count_if(second.rgba8(), second.rgba8() + 21, set), second.rgba8()[20].a),
                FieldsAre(1, 255));
    // A view on the image's pixels: pixel (x, y) is the (y * width + x)th.
    orv::verra::Vector2d<orv::verra::Rgba8, false> const view(second.rgba8(), 7, 3);
    EXPECT_THAT(std::tuple(view.count, view.empty(), view(6, 2).a, decltype(view)().empty()),
                FieldsAre(21u, false, 255, true));
}

} // namespace
