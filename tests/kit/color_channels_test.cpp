// Tests of verra_sdk/kit/color_channels.h.

#include "support/kit_env.h"

#include <verra_sdk/kit/color_channels.h>

namespace verra_test {
namespace {

using ColorChannels = KitTest;

/// The sRGB curve decoded (d) and encoded (e) at a few values; kH and kQ are kD50 / 2 and kD25 / 2.
constexpr float kD50 = 0.214041f, kD25 = 0.0508761f, kD128 = 0.215861f, kE50 = 0.735357f, kE25 = 0.537099f;
constexpr float kH = kD50 / 2, kQ = kD25 / 2;

/// A level of the pixels `values` (one pixel a row) held as `type`, its file storing UINT16.
kit::ImageLevel levelOf(Names const& names, Floats const& values, T type = T::FLOAT, bool associated = false)
{
    kit::ImageLevel level;
    OIIO::ImageBufAlgo::copy(level.pixels, imageOf(1, names, values), type);
    level.fileSpec = level.pixels.spec();
    level.fileSpec.set_format(T::UINT16);
    level.associatedAlpha = associated;
    return level;
}

TEST_F(ColorChannels, FindsAndConvertsTheStraightColourOfTheColourChannelsOnly)
{
    Names const rgba{"R", "G", "B", "A"}, rgb{"R", "G", "B"};
    T const F = T::FLOAT, B = T::UINT8;
    // From sRGB to linear when `decode`, else back; grey comes out as `outNames` (empty: `names`).
    std::tuple<Names, Names, T, T, bool, bool, Floats, Floats> const cases[] = {
        {rgba, {}, F, F, false, true, {.5f, .25f, 1, .5f}, {kD50, kD25, 1, .5f}},
        // Associated: divided by alpha, converted, multiplied again.
        {rgba, {}, F, F, true, true, {.25f, .125f, .5f, .5f}, {kH, kQ, .5f, .5f}},
        {rgba, {}, F, F, true, false, {.25f, .125f, .5f, .5f}, {kE50 / 2, kE25 / 2, .5f, .5f}},
        // By name in any order, else the first plain channels; the others untouched.
        {{"N", "B", "G", "R", "A"}, {}, F, F, true, true, {.3f, .25f, .5f, .125f, .5f}, {.3f, kH, .5f, kQ, .5f}},
        {{"X", "Y", "W", "V"}, {}, F, F, false, false, {.5f, .25f, 1, .3f}, {kE50, kE25, 1, .3f}},
        {{"A", "R", "G", "B"}, {}, F, F, true, true, {.5f, .25f, .125f, .5f}, {.5f, kH, kQ, .5f}},
        // Bytes stay bytes unless alpha is associated.
        {rgba, {}, B, B, false, true, {128 / 255.0f, 1, 0, .2f}, {55 / 255.0f, 1, 0, .2f}},
        {rgba, {}, B, F, true, true, {.25f, .125f, .5f, .5f}, {kH, kQ, .5f, .5f}},
        // Grey, alone or with alpha whatever its name, comes out as RGB.
        {{"Y"}, rgb, B, B, false, true, {128 / 255.0f}, {kD128, kD128, kD128}},
        {{"Y", "M"}, rgba, F, F, false, true, {.5f, .3f}, {kD50, kD50, kD50, .3f}},
        {{"Z", "Y", "A"}, {"R", "G", "B", "Z", "A"}, F, F, true, true, {.3f, .25f, .5f}, {kH, kH, kH, .3f, .5f}},
    };
    for (auto const& [names, outNames, type, outType, associated, decode, in, out] : cases) {
        kit::ImageLevel level = levelOf(names, in, type, associated);
        std::string error;
        char const* const to = decode ? "linear" : "sRGB";
        SCOPED_TRACE(OIIO::Strutil::join(names, ",") + " " + type.c_str() + " " + to);
        ASSERT_TRUE(kit::convertLevel(level, decode ? "sRGB" : "linear", to, error)) << error;
        EXPECT_THAT(floatsOf(level.pixels), Pointwise(FloatNear(2e-3f), out));
        EXPECT_EQ(level.pixels.spec().format, outType);
        EXPECT_THAT(level.fileSpec.channelnames, ElementsAreArray(outNames.empty() ? names : outNames));
        EXPECT_EQ(level.fileSpec.alpha_channel, level.fileSpec.channelindex("A"));
        EXPECT_EQ(level.fileSpec.get_string_attribute("oiio:ColorSpace"), to);
    }
    kit::ImageLevel level = levelOf({"B", "G", "R", "A"}, {.1f, .2f, .3f, .5f}, F, true);
    OIIO::ImageBuf packed;
    std::string error;
    ASSERT_TRUE(kit::colorChannelsOf(level, packed, error)) << error;
    EXPECT_THAT(floatsOf(packed), ElementsAre(.3f, .2f, .1f));
}

} // namespace
} // namespace verra_test
