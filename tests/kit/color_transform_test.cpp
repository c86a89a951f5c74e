// Tests of verra_sdk/kit/color_transform.h: looks, LUT files and context
// variables against oiiotool's --ociolook, --ociofiletransform and the
// environment.

#include "support/images.h"
#include "support/kit_env.h"

#include <verra_sdk/kit/color_transform.h>

namespace verra_test {
namespace {

namespace kit = orv::verra_sdk::kit;
using namespace ::testing;
using ColorTransform = KitTest;

TEST_F(ColorTransform, LooksLutFilesAndContextApplyAsOiiotoolAppliesThem)
{
    // The space "shot" reads $SHOT.spi1d: a.spi1d halves, b.spi1d doubles.
    for (auto const& [name, top] : {std::pair{"a.spi1d", "0.5"}, {"b.spi1d", "2"}}) {
        m_env.dir().write(name, std::string("Version 1\nFrom 0 1\nLength 2\nComponents 1\n{\n0\n") + top + "\n}\n");
    }
    std::string const config = sampleConfig("  - !<ColorSpace> {name: shot, to_scene_reference: "
                                            "!<FileTransform> {src: $SHOT.spi1d, interpolation: linear}}\n");
    ASSERT_THAT(load(config).errors, IsEmpty());
    OIIO::ImageBuf noise(OIIO::ImageSpec(16, 16, 4, OIIO::TypeDesc::FLOAT));
    OIIO::ImageBufAlgo::noise(noise, "uniform", 0.05f, 1.0f, false);
    ASSERT_TRUE(noise.write(file("in.exr")));
    std::string const lut = file("b.spi1d");
    // Each reference changes the pixels: no no-op hides behind another.
    std::tuple<kit::ColorTransform, std::string, std::string> const cases[] = {
        {{"lin", "lin", "Bright"}, "--ociolook:from=lin:to=lin Bright", ""},
        {{"scene", "srgb_texture", "bright"}, "--ociolook:from=lin:to=srgb_tex Bright", ""},
        {{"", "", "", lut}, "--ociofiletransform '" + lut + "'", ""},
        {{"", "", "", lut, true}, "--ociofiletransform:inverse=1 '" + lut + "'", ""},
        {{"shot", "lin", "", "", false, {{"SHOT", "a"}}}, "--colorconvert shot lin", "SHOT=a "},
        {{"shot", "lin", "", "", false, {{"SHOT", "b"}}}, "--colorconvert shot lin", "SHOT=b "},
    };
    Floats const input = floatsOf(noise);
    for (auto const& [request, operation, environment] : cases) {
        kit::ColorTransform transform = request;
        std::string error;
        ASSERT_TRUE(kit::chooseColorTransform(transform, error)) << error;
        OIIO::ImageBuf pixels(noise);
        ASSERT_TRUE(kit::applyColorTransform(transform, pixels, error)) << error;
        Floats const theirs = oiiotool(config, file("in.exr"), operation, file("ref.exr"), environment);
        EXPECT_GT(largestDifference(theirs, input), 0.1f) << operation;
        EXPECT_LT(largestDifference(floatsOf(pixels), theirs), 1e-5f) << operation;
    }
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

} // namespace
} // namespace verra_test
