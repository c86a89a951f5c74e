// Tests of verra_sdk/kit/color_transform.h: looks, LUT files and context
// variables against oiiotool's --ociolook, --ociofiletransform and the
// environment.

#include "support/kit_env.h"

#include <verra_sdk/kit/color_transform.h>

namespace verra_test {
namespace {

using ColorTransform = KitTest;

TEST_F(ColorTransform, LooksLutFilesAndContextApplyAsOiiotoolAppliesThem)
{
    std::string const config = shotConfig();
    ASSERT_THAT(load(config).errors, IsEmpty());
    OIIO::ImageBuf noise(OIIO::ImageSpec(16, 16, 4, OIIO::TypeDesc::FLOAT));
    OIIO::ImageBufAlgo::noise(noise, "uniform", 0.05f, 1.0f, false);
    ASSERT_TRUE(noise.write(file("in.exr")));
    std::string const lut = file("b.spi1d");
    // Each transform against oiiotool's operation with the environment given; each reference changes the
    // pixels: no no-op hides behind another.
    std::tuple<kit::ColorTransform, std::string, std::string> const cases[] = {
        {{"lin", "lin", "Bright"}, "--ociolook:from=lin:to=lin Bright", ""},
        {{"scene", "srgb_texture", "bright"}, "--ociolook:from=lin:to=srgb_tex Bright", ""},
        {{"", "", "", lut}, "--ociofiletransform '" + lut + "'", ""},
        {{"", "", "", lut, true}, "--ociofiletransform:inverse=1 '" + lut + "'", ""},
        {{"shot", "lin", "", "", false, {{"SHOT", "a"}}}, "--colorconvert shot lin", "SHOT=a "},
        {{"shot", "lin", "", "", false, {{"SHOT", "b"}}}, "--colorconvert shot lin", "SHOT=b "},
    };
    for (auto const& [request, operation, environment] : cases) {
        kit::ColorTransform transform = request;
        std::string error;
        ASSERT_TRUE(kit::chooseColorTransform(transform, error)) << error;
        OIIO::ImageBuf pixels(noise);
        ASSERT_TRUE(kit::applyColorTransform(transform, pixels, error)) << error;
        Floats const theirs = oiiotool(config, file("in.exr"), operation, file("ref.exr"), environment);
        EXPECT_GT(largestDifference(theirs, floatsOf(noise)), 0.1f) << operation;
        EXPECT_LT(largestDifference(floatsOf(pixels), theirs), 1e-5f) << operation;
    }
    std::pair<kit::ColorTransform, std::string> const refused[] = {
        {{"lin", "shot"}, "cannot convert from 'lin' to 'shot': The specified file reference '$SHOT.spi1d'"},
        {{"", "", "", file("sample.ocio")}, "cannot read the LUT file '" + file("sample.ocio") + "': "},
        {{"lin", "", "", lut}, "a LUT file is applied alone, without colour spaces or looks"},
        {{"lin", "raw", "Dim"}, "unknown look 'Dim'; the config's looks: 'Bright'"},
    };
    for (auto const& [request, message] : refused) {
        kit::ColorTransform transform = request;
        std::string error;
        EXPECT_FALSE(kit::chooseColorTransform(transform, error));
        EXPECT_THAT(error, StartsWith(message));
    }
}

TEST_F(ColorTransform, OneColourTakesTheModulesRouteWhenPlainElseTheProcessor)
{
    using orv::verra_sdk::ColorRoute;
    ASSERT_THAT(load(sampleConfig()).errors, IsEmpty());
    // The module's sRGB curve; the look doubling 0.05 before the config's curve, in single precision; a built-in
    // colour space the config cannot convert, which leaves the colour as it was.
    std::tuple<kit::ColorTransform, double, double, ColorRoute, std::string> const cases[] = {
        {{" SRGB ", "linear"}, 0.5, 0.21404114365577698, ColorRoute::BuiltInCurve, ""},
        {{"scene", "srgb_texture", "Bright"}, 0.05, 0.3491902, ColorRoute::Processor, ""},
        {{"Rec709", "lin"}, 0.5, 0.5, ColorRoute::None, "cannot convert from 'Rec709' to 'lin' with this config"},
    };
    for (auto [transform, value, expected, route, message] : cases) {
        orv::math::RgbaT<double> color{value, value, value, 0.25};
        ColorRoute taken = ColorRoute::Same;
        std::string error;
        EXPECT_EQ(kit::convertColor(transform, color, taken, error), message.empty()) << error;
        EXPECT_THAT((std::vector{color.r, color.a}), ElementsAre(DoubleNear(expected, 1e-7), 0.25));
        EXPECT_THAT(std::tuple(taken, error), FieldsAre(route, message));
    }
}

} // namespace
} // namespace verra_test
