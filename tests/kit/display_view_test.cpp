// Tests of verra_sdk/kit/display_view.h.

#include "support/kit_env.h"

#include <verra_sdk/kit/display_view.h>

#include <cmath>

namespace verra_test {
namespace {

namespace Strutil = OIIO::Strutil;

using DisplayView = KitTest;

TEST_F(DisplayView, ChoosesAnyViewAndAppliesItsLooksAsAViewWithThemWould)
{
    kit::DisplayView chosen;
    std::string error;
    EXPECT_FALSE(kit::chooseDisplayView({"linear", "", "", ""}, chosen, error));
    EXPECT_EQ(error, "the built-in colour spaces have no displays or views; give a config with --config");
    // The sample config with two more views of Monitor: BrightStd (Standard
    // with the look Bright) and the shared view Shared; only Tone is active.
    std::string const yaml = Strutil::replace(
        Strutil::replace(readFile(sampleConfig()), "active_views: []", "active_views: [Tone]"),
        "{name: Raw, colorspace: raw}]",
        "{name: Raw, colorspace: raw},\n            !<View> {name: BrightStd, colorspace: srgb_tex, looks: Bright},"
        " !<Views> [Shared]]\nshared_views: [!<View> {name: Shared, colorspace: raw}]");
    ASSERT_THAT(load(m_env.dir().write("views.ocio", yaml)).errors, IsEmpty());
    auto const srgb = [](float linear) { return 1.055f * std::pow(linear, 1.0f / 2.4f) - 0.055f; };
    for (int channels : {3, 4}) {
        OIIO::ImageBuf noise(OIIO::ImageSpec(8, 64, channels, OIIO::TypeDesc::FLOAT));
        OIIO::ImageBufAlgo::noise(noise, "uniform", 0.01f, 1.0f, false);
        auto const shown = [&](std::string const& view, std::string const& looks) {
            EXPECT_TRUE(kit::chooseDisplayView({"lin", "Monitor", view, looks}, chosen, error)) << error;
            OIIO::ImageBuf pixels(noise);
            EXPECT_TRUE(kit::applyDisplayView(chosen, pixels, error)) << error;
            return floatsOf(pixels);
        };
        std::vector<float> const input = floatsOf(noise);
        std::vector<float> const plain = shown("Standard", "");
        std::vector<float> const bright = shown("Standard", "bright");
        for (std::size_t i = 0; i < input.size(); ++i) {
            bool const alpha = i % std::size_t(channels) == 3;
            ASSERT_NEAR(plain[i], alpha ? input[i] : srgb(input[i]), 1e-4) << i;
            ASSERT_NEAR(bright[i], alpha ? input[i] : srgb(2 * input[i]), 1e-4) << i;
        }
        EXPECT_EQ(shown("BrightStd", ""), bright);
    }
    // The inverse view takes display-referred pixels (that the view can give)
    // back to "lin": oiiotool's forward view of the result gives them again.
    OIIO::ImageBuf display(OIIO::ImageSpec(16, 16, 3, OIIO::TypeDesc::FLOAT));
    OIIO::ImageBufAlgo::noise(display, "uniform", 0.02f, 1.0f, false);
    ASSERT_TRUE(kit::chooseDisplayView({"lin", "Monitor", "Tone", ""}, chosen, error));
    ASSERT_TRUE(kit::applyDisplayView(chosen, display, error)) << error;
    ASSERT_TRUE(kit::chooseDisplayView({"scene", "Monitor", "Tone", "", true}, chosen, error)) << error;
    EXPECT_EQ(chosen.result, "lin");
    OIIO::ImageBuf back(display);
    ASSERT_TRUE(kit::applyDisplayView(chosen, back, error) && back.write(file("back.exr"))) << error;
    Floats const again =
        oiiotool(file("views.ocio"), file("back.exr"), "--ociodisplay:from=lin Monitor Tone", file("again.exr"));
    EXPECT_GT(largestDifference(floatsOf(back), floatsOf(display)), 0.1f);
    EXPECT_LT(largestDifference(again, floatsOf(display)), 5e-3f);
    OIIO::ImageBuf twoChannels(OIIO::ImageSpec(1, 1, 2, OIIO::TypeDesc::FLOAT));
    EXPECT_FALSE(kit::applyDisplayView({"lin", "Monitor", "Standard", "", "srgb_tex"}, twoChannels, error));
    EXPECT_EQ(error, "the display transform needs float RGB or RGBA pixels");
    // What is chosen (from|display|view|looks|result), or why nothing is.
    std::vector<std::pair<kit::DisplayViewRequest, std::string>> const cases{
        {{"linear", "", "", ""}, "lin|Monitor|Tone||tone"},
        {{"lin", "monitor", "RAW", "Bright, -bright"}, "lin|Monitor|Raw|Bright, -Bright|raw"},
        {{"lin", "", "shared", ""}, "lin|Monitor|Shared||raw"},
        {{"lin", "TV", "", ""}, "unknown display 'TV'; the config's displays: 'Monitor'"},
        {{"lin", "", "Film", ""},
         "unknown view 'Film' of the display 'Monitor'; its views: 'Tone', 'Standard', 'Raw', 'BrightStd', 'Shared'"},
        {{"lin", "", "", "Bright, +warm"}, "unknown look '+warm'; the config's looks: 'Bright'"},
        {{"Rec709", "", "", ""},
         "'Rec709' is a built-in colour space that this config does not have; this transform needs one of the "
         "config's"},
    };
    for (auto const& [request, expected] : cases) {
        bool const chose = kit::chooseDisplayView(request, chosen, error);
        EXPECT_EQ(chose
                      ? Strutil::join(Names{chosen.from, chosen.display, chosen.view, chosen.looks, chosen.result}, "|")
                      : error,
                  expected);
    }
}

} // namespace
} // namespace verra_test
