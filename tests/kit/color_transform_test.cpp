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
    kit::ColorTransform plain{" SRGB ", "linear"};
    orv::math::RgbaT<double> color{0.5, 0.5, 0.5, 0.25};
    ColorRoute route = ColorRoute::None;
    std::string error;
    // The module's sRGB curve in double precision, under the built-in's resolved name.
    ASSERT_TRUE(kit::convertColor(plain, color, route, error)) << error;
    EXPECT_THAT((std::vector{color.r, color.a}), ElementsAre(0.21404114365577698, 0.25));
    EXPECT_THAT((std::pair{plain.from, route}), FieldsAre("sRGB", ColorRoute::BuiltInCurve));
    // The look doubles 0.05 and 0.1 before the config's sRGB curve, in single precision.
    kit::ColorTransform bright{"scene", "srgb_texture", "Bright"};
    color = {0.05, 0.1, 0.15, 2.0};
    ASSERT_TRUE(kit::convertColor(bright, color, route, error)) << error;
    EXPECT_THAT((std::vector{color.r, color.g, color.a}),
                ElementsAre(DoubleNear(0.3491902, 1e-6), DoubleNear(0.4845292, 1e-6), 2.0));
    EXPECT_EQ(route, ColorRoute::Processor);
    // A built-in colour space that the config cannot convert leaves the colour as it was.
    kit::ColorTransform isolated{"Rec709", "lin"};
    EXPECT_FALSE(kit::convertColor(isolated, color, route, error));
    EXPECT_EQ(error, "cannot convert from 'Rec709' to 'lin' with this config");
    EXPECT_THAT(color.r, DoubleNear(0.3491902, 1e-6));
}

} // namespace
} // namespace verra_test
