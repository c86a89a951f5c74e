// Tests of verra_sdk/kit/color_transform.h: looks, LUT files and context
// variables against oiiotool's --ociolook, --ociofiletransform and the
// environment.

#include "support/kit_env.h"

#include <verra_sdk/kit/color_transform.h>

namespace verra_test {
namespace {

class ColorTransform : public KitTest {
protected:
    /// Each transform applied to `noise` against oiiotool's operation on the same pixels (with the environment
    /// given): the reference changes the pixels, and the toolkit gives its values.
    void expectLikeOiiotool(std::string const& config, OIIO::ImageBuf const& noise,
                            std::vector<std::tuple<kit::ColorTransform, std::string, std::string>> const& cases)
    {
        ASSERT_TRUE(noise.write(file("in.exr")));
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
    }
};

TEST_F(ColorTransform, LooksLutFilesAndContextApplyAsOiiotoolAppliesThem)
{
    std::string const config = shotConfig();
    ASSERT_THAT(load(config).errors, IsEmpty());
    OIIO::ImageBuf noise(OIIO::ImageSpec(16, 16, 4, OIIO::TypeDesc::FLOAT));
    OIIO::ImageBufAlgo::noise(noise, "uniform", 0.05f, 1.0f, false);
    std::string const lut = file("b.spi1d");
    // Each reference changes the pixels: no no-op hides behind another.
    expectLikeOiiotool(config, noise,
                       {
                           {{"lin", "lin", "Bright"}, "--ociolook:from=lin:to=lin Bright", ""},
                           {{"scene", "srgb_texture", "bright"}, "--ociolook:from=lin:to=srgb_tex Bright", ""},
                           {{"", "", "", lut}, "--ociofiletransform '" + lut + "'", ""},
                           {{"", "", "", lut, true}, "--ociofiletransform:inverse=1 '" + lut + "'", ""},
                           {{"shot", "lin", "", "", false, {{"SHOT", "a"}}}, "--colorconvert shot lin", "SHOT=a "},
                           {{"shot", "lin", "", "", false, {{"SHOT", "b"}}}, "--colorconvert shot lin", "SHOT=b "},
                       });
    std::pair<kit::ColorTransform, std::string> const refused[] = {
        {{"lin", "shot"}, "cannot convert from 'lin' to 'shot': The specified file reference '$SHOT.spi1d'"},
        {{"", "", "", file("sample.ocio")}, "cannot read the LUT file '" + file("sample.ocio") + "': "},
        {{"lin", "", "", lut}, "a LUT file is applied alone, without colour spaces or looks"},
    };
    for (auto const& [request, message] : refused) {
        kit::ColorTransform transform = request;
        std::string error;
        EXPECT_FALSE(kit::chooseColorTransform(transform, error));
        EXPECT_THAT(error, StartsWith(message));
    }
}

TEST_F(ColorTransform, SharedConfigsLookAndLutFileApplyAsOiiotoolAppliesThem)
{
    std::string const cg = loadShared(kCgConfig), lut = sharedFile("imageworks-nuke-default/luts/cineon.spi1d");
    if (cg.empty() || lut.empty()) {
        GTEST_SKIP() << "the shared configs are not there";
    }
    // Saturated colours, many outside AP1, where the gamut compression acts.
    OIIO::ImageBuf noise(OIIO::ImageSpec(16, 16, 3, OIIO::TypeDesc::FLOAT));
    OIIO::ImageBufAlgo::noise(noise, "uniform", -0.5f, 1.0f, false);
    std::string const look = "ACES 1.3 Reference Gamut Compression";
    expectLikeOiiotool(cg, noise,
                       {{{"ACEScg", "ACEScg", look}, "--ociolook:from=ACEScg:to=ACEScg '" + look + "'", ""},
                        {{"", "", "", lut}, "--ociofiletransform '" + lut + "'", ""},
                        {{"", "", "", lut, true}, "--ociofiletransform:inverse=1 '" + lut + "'", ""}});
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
