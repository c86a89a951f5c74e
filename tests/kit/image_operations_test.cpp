// Tests of verra_sdk/kit/image_operations.h.

#include "support/kit_env.h"

#include <verra_sdk/kit/image_operations.h>

namespace verra_test {
namespace {

using ImageOperations = KitTest;

/// A FLOAT image of one row holding `values` as RGB pixels.
kit::ImageLevel rgbLevel(std::vector<float> const& values)
{
    kit::ImageLevel level;
    level.pixels.reset(OIIO::ImageSpec(int(values.size() / 3), 1, 3, OIIO::TypeDesc::FLOAT));
    level.pixels.set_pixels(level.pixels.roi(), OIIO::TypeDesc::FLOAT, values.data());
    level.fileSpec = level.pixels.spec();
    return level;
}

TEST_F(ImageOperations, EachOperationConvertsTheImageAndNamesItsNewSpace)
{
    std::string error;
    kit::ImageLevel converted = rgbLevel({0.5f, 0.18f, 0.0f});
    ASSERT_TRUE(kit::conversionOperation("linear", "sRGB")(converted, error)) << error;
    EXPECT_THAT(floatsOf(converted.pixels), Pointwise(FloatNear(1e-4f), {0.7354f, 0.4614f, 0.0f}));
    EXPECT_EQ(converted.fileSpec.get_string_attribute("oiio:ColorSpace"), "sRGB");
    for (bool const alpha : {true, false}) {
        kit::ImageLevel preview = rgbLevel({0.5f, 0.18f, 2.0f});
        ASSERT_TRUE(kit::previewOperation("linear", "sRGB", alpha)(preview, error)) << error;
        std::vector<unsigned char> bytes(alpha ? 4 : 3);
        ASSERT_EQ(preview.pixels.spec().format, OIIO::TypeDesc::UINT8);
        preview.pixels.get_pixels(preview.pixels.roi(), OIIO::TypeDesc::UINT8, bytes.data());
        std::vector<unsigned char> const expected{188, 118, 255, 255};
        EXPECT_EQ(bytes, std::vector<unsigned char>(expected.begin(), expected.begin() + (alpha ? 4 : 3)));
        EXPECT_EQ(preview.fileSpec.get_string_attribute("oiio:ColorSpace"), "sRGB");
    }
    // A name without a processor fails either operation, leaving the level as it was.
    for (kit::ImageOperation const& failing :
         {kit::conversionOperation("nope", "sRGB"), kit::previewOperation("linear", "nope", true)}) {
        kit::ImageLevel level = rgbLevel({0.5f, 0.18f, 0.0f});
        EXPECT_FALSE(failing(level, error));
        EXPECT_THAT(floatsOf(level.pixels), ElementsAre(0.5f, 0.18f, 0.0f));
        EXPECT_EQ(level.fileSpec.get_string_attribute("oiio:ColorSpace"), "");
    }
    ASSERT_THAT(load(sampleConfig()).errors, IsEmpty());
    kit::DisplayView raw;
    ASSERT_TRUE(kit::chooseDisplayView({"lin", "Monitor", "Raw", ""}, raw, error)) << error;
    kit::ImageLevel viewed = rgbLevel({0.5f, 0.18f, 2.0f});
    ASSERT_TRUE(kit::displayViewOperation(raw)(viewed, error)) << error;
    EXPECT_THAT(floatsOf(viewed.pixels), ElementsAre(0.5f, 0.18f, 2.0f));
    EXPECT_EQ(viewed.fileSpec.get_string_attribute("oiio:ColorSpace"), "raw");
}

TEST_F(ImageOperations, PreviewTargetsHoldEightBits)
{
    bool alpha = false;
    std::string error;
    // Whether each file type is taken, then whether it keeps alpha.
    EXPECT_THAT((std::vector<bool>{kit::previewTarget(file("a.png"), alpha, error), alpha,
                                   kit::previewTarget(file("a.jpg"), alpha, error), alpha}),
                ElementsAre(true, true, true, false));
    EXPECT_FALSE(kit::previewTarget(file("a.nothing"), alpha, error));
    EXPECT_THAT(error, HasSubstr("nothing"));
}

} // namespace
} // namespace verra_test
