// ColorConfig::transform, colorSpaceToLinear and linearToColorSpace on an
// RGBA8 image. Converted pixels are compared with what
// OpenImageIO's colorconvert gives on a copy of the same bytes with the same
// processor: OpenImageIO's processors without a config file use fast
// approximations, so the module's own curves are not the reference here.

#include "conversion_test_support.h"

#include <verra_sdk/colorconfig.h>

#include <OpenColorIO/OpenColorIO.h>

#include <gtest/gtest.h>

#include <cstdint>
#include <cstring>
#include <string>
#include <utility>
#include <vector>

namespace {

namespace OCIO = OCIO_NAMESPACE;
using orv::String;
using orv::verra::Rgba8;
using orv::verra_sdk::ColorConfig;
using orv::verra_sdk::Image;
using verra_test::LogCapture;

class ImageTransform : public verra_test::ConversionTest {};

using Lines = std::vector<std::string>;

/// An image whose bytes take every value in each channel (32 × 8 pixels).
Image makeImage(int width = 32, int height = 8)
{
    Image image = Image::create(width, height);
    EXPECT_TRUE(image.isValid());
    Rgba8* pixels = image.rgba8();
    int const count = width * height;
    for (int i = 0; i < count; ++i) {
        pixels[i] = Rgba8{static_cast<std::uint8_t>(i * 7), static_cast<std::uint8_t>(i * 13 + 5),
                          static_cast<std::uint8_t>(i * 29 + 11), static_cast<std::uint8_t>(i * 3 + 1)};
    }
    return image;
}

std::vector<std::uint8_t> bytesOf(Image const& image)
{
    auto const* first = reinterpret_cast<std::uint8_t const*>(image.rgba8());
    std::size_t const size = static_cast<std::size_t>(image.width()) * static_cast<std::size_t>(image.height()) * 4u;
    return std::vector<std::uint8_t>(first, first + size);
}

/// What colorconvert gives in place, with the module's arguments (4 channels
/// of UINT8, default region, no unpremultiplication), on a copy of `bytes`.
std::vector<std::uint8_t> reference(std::vector<std::uint8_t> bytes, int width, int height, char const* from,
                                    char const* to)
{
    EXPECT_TRUE(verra_test::referenceConvert(bytes.data(), 4, OIIO::TypeDesc::UINT8, bytes.data(), 4,
                                             OIIO::TypeDesc::UINT8, width, height, from, to, OIIO::ROI()));
    return bytes;
}

/// OpenColorIO's logging level is set once, to 0, by the module's first
/// access to the configuration: a level that stays elsewhere shows that the
/// configuration was not touched. Only meaningful in a fresh process.
void markConfigUntouched() { OCIO::SetLoggingLevel(OCIO::LOGGING_LEVEL_INFO); }
bool configTouched() { return OCIO::GetLoggingLevel() == OCIO::LOGGING_LEVEL_NONE; }

TEST_F(ImageTransform, InvalidImageFailsSilentlyWithoutTouchingTheConfiguration)
{
    if (!firstInProcess()) {
        GTEST_SKIP() << "needs a fresh process (run it through CTest)";
    }
    markConfigUntouched();
    LogCapture const log;
    for (Image const& image : {Image(), Image::create(-1, 4), Image::create(70000, 70000)}) {
        ASSERT_FALSE(image.isValid());
        EXPECT_FALSE(ColorConfig::transform(image, String("linear"), String("sRGB")));
        EXPECT_FALSE(ColorConfig::transform(image, String("nope"), String("")));
        EXPECT_FALSE(ColorConfig::colorSpaceToLinear(image, String("nope")));
        EXPECT_FALSE(ColorConfig::linearToColorSpace(image, String("")));
    }
    EXPECT_EQ(log.lines(), Lines{});
    EXPECT_FALSE(configTouched());
    // The probe works: a real conversion touches the configuration.
    Image const image = makeImage();
    EXPECT_TRUE(ColorConfig::linearToColorSpace(image, String("sRGB")));
    EXPECT_TRUE(configTouched());
}

TEST_F(ImageTransform, EqualNamesAfterTheSrgbDefaultLeaveThePixelsUntouched)
{
    bool const fresh = firstInProcess();
    if (fresh) {
        markConfigUntouched();
    }
    LogCapture const log;
    Image const image = makeImage();
    std::vector<std::uint8_t> const before = bytesOf(image);
    char const* const pairs[][2] = {{"", ""}, {"", "sRGB"}, {"sRGB", ""}, {"linear", "linear"}, {"nope", "nope"}};
    for (auto const& pair : pairs) {
        EXPECT_TRUE(ColorConfig::transform(image, String(pair[0]), String(pair[1]))) << pair[0] << " -> " << pair[1];
        EXPECT_EQ(bytesOf(image), before) << pair[0] << " -> " << pair[1];
    }
    EXPECT_TRUE(ColorConfig::colorSpaceToLinear(image, String("linear")));
    EXPECT_TRUE(ColorConfig::linearToColorSpace(image, String("linear")));
    EXPECT_EQ(bytesOf(image), before);
    EXPECT_EQ(log.lines(), Lines{});
    if (fresh) {
        EXPECT_FALSE(configTouched()) << "equal names must return before the configuration is obtained";
    }
}

// Names are compared exactly: "sRGB" to "srgb" asks the configuration.
TEST_F(ImageTransform, NamesDifferingInCaseGoThroughTheConfiguration)
{
    bool const fresh = firstInProcess();
    if (fresh) {
        markConfigUntouched();
    }
    LogCapture const log;
    Image const image = makeImage();
    std::vector<std::uint8_t> const before = bytesOf(image);
    EXPECT_TRUE(ColorConfig::transform(image, String("sRGB"), String("srgb")));
    if (fresh) {
        // Checked before the reference below obtains the configuration itself.
        EXPECT_TRUE(configTouched());
    }
    EXPECT_EQ(bytesOf(image), reference(before, 32, 8, "sRGB", "srgb"));
    EXPECT_EQ(log.lines(), Lines{});
}

TEST_F(ImageTransform, UnknownNamesLogTheFirstMessageAndLeaveThePixelsUntouched)
{
    Image const image = makeImage();
    std::vector<std::uint8_t> const before = bytesOf(image);
    struct Case {
        bool (*call)(Image const&);
        char const* message;
    };
    Case const cases[] = {
        {[](Image const& i) { return ColorConfig::colorSpaceToLinear(i, String("nope")); },
         "Cannot convert from 'nope' to 'linear'."},
        {[](Image const& i) { return ColorConfig::linearToColorSpace(i, String("nope")); },
         "Cannot convert from 'linear' to 'nope'."},
        {[](Image const& i) { return ColorConfig::transform(i, String(""), String("nope")); },
         "Cannot convert from 'sRGB' to 'nope'."},
        {[](Image const& i) { return ColorConfig::transform(i, String("nope"), String("")); },
         "Cannot convert from 'nope' to 'sRGB'."},
        // The built-in configuration has no way from sRGB to Rec709.
        {[](Image const& i) { return ColorConfig::transform(i, String("sRGB"), String("Rec709")); },
         "Cannot convert from 'sRGB' to 'Rec709'."},
    };
    for (Case const& c : cases) {
        LogCapture const log;
        EXPECT_FALSE(c.call(image)) << c.message;
        EXPECT_EQ(log.lines(), Lines{c.message});
        EXPECT_EQ(bytesOf(image), before) << c.message;
    }
}

TEST_F(ImageTransform, TheCallersNamesKeepTheirValues)
{
    Image const image = makeImage();
    String const empty;
    String const target("nope");
    LogCapture const log;
    EXPECT_FALSE(ColorConfig::transform(image, empty, target));
    EXPECT_EQ(log.lines(), Lines{"Cannot convert from 'sRGB' to 'nope'."});
    EXPECT_TRUE(empty.isEmpty());
    EXPECT_EQ(std::string(target.buf()), "nope");
}

TEST_F(ImageTransform, LinearToColorSpaceWithAnEmptyNameConvertsToSrgb)
{
    LogCapture const log;
    Image const image = makeImage();
    std::vector<std::uint8_t> const before = bytesOf(image);
    std::vector<std::uint8_t> const want = reference(before, 32, 8, "linear", "sRGB");
    ASSERT_NE(want, before);
    EXPECT_TRUE(ColorConfig::linearToColorSpace(image, String("")));
    EXPECT_EQ(bytesOf(image), want);
    EXPECT_EQ(log.lines(), Lines{});
}

TEST_F(ImageTransform, SuccessfulConversionsEqualColorconvertOnACopy)
{
    char const* const pairs[][2] = {{"linear", "sRGB"}, {"sRGB", "linear"}, {"linear", "Rec709"},
                                    {"Rec709", "linear"}, {"lnf", "sRGB"}};
    for (auto const& pair : pairs) {
        SCOPED_TRACE(std::string(pair[0]) + " -> " + pair[1]);
        LogCapture const log;
        Image const image = makeImage(31, 9); // rows of an odd length
        std::vector<std::uint8_t> const before = bytesOf(image);
        std::vector<std::uint8_t> const want = reference(before, 31, 9, pair[0], pair[1]);
        ASSERT_NE(want, before);
        EXPECT_TRUE(ColorConfig::transform(image, String(pair[0]), String(pair[1])));
        EXPECT_EQ(bytesOf(image), want);
        EXPECT_EQ(log.lines(), Lines{});
    }
    // The two conveniences.
    Image const image = makeImage();
    std::vector<std::uint8_t> const want = reference(bytesOf(image), 32, 8, "Rec709", "linear");
    EXPECT_TRUE(ColorConfig::colorSpaceToLinear(image, String("Rec709")));
    EXPECT_EQ(bytesOf(image), want);
    std::vector<std::uint8_t> const want2 = reference(bytesOf(image), 32, 8, "linear", "Rec709");
    EXPECT_TRUE(ColorConfig::linearToColorSpace(image, String("Rec709")));
    EXPECT_EQ(bytesOf(image), want2);
}

TEST_F(ImageTransform, ConversionsThroughATestConfigEqualColorconvertOnACopy)
{
    verra_test::OcioConfigText text;
    text.colorSpaces = {"lin", "srgb_tex"};
    text.srgbSpaces = {"srgb_tex"};
    loadConfig(text);
    LogCapture const log;
    for (auto const& pair : {std::pair<char const*, char const*>{"lin", "srgb_tex"}, {"srgb_tex", "lin"}}) {
        Image const image = makeImage();
        std::vector<std::uint8_t> const before = bytesOf(image);
        std::vector<std::uint8_t> const want = reference(before, 32, 8, pair.first, pair.second);
        ASSERT_NE(want, before);
        EXPECT_TRUE(ColorConfig::transform(image, String(pair.first), String(pair.second)));
        EXPECT_EQ(bytesOf(image), want);
    }
    EXPECT_EQ(log.lines(), Lines{});
}

TEST_F(ImageTransform, ASecondHandleSeesTheConvertedPixels)
{
    Image const first = makeImage();
    Image const second = first; // NOLINT(performance-unnecessary-copy-initialization): a second handle
    std::vector<std::uint8_t> const want = reference(bytesOf(first), 32, 8, "sRGB", "linear");
    EXPECT_TRUE(ColorConfig::colorSpaceToLinear(first, String("sRGB")));
    EXPECT_EQ(second.rgba8(), first.rgba8());
    EXPECT_EQ(bytesOf(second), want);
}

// A valid image without pixels: nothing to convert. OpenImageIO 2.4.7's
// colorconvert crashes on a width of 0 with a non-zero height, so the module
// must not hand it such an image; the processor is still asked for.
TEST_F(ImageTransform, ImagesWithoutPixelsConvertNothing)
{
    for (auto const& size : {std::pair<int, int>{0, 5}, {5, 0}, {0, 0}}) {
        SCOPED_TRACE(std::to_string(size.first) + " x " + std::to_string(size.second));
        Image const image = Image::create(size.first, size.second);
        ASSERT_TRUE(image.isValid());
        {
            LogCapture const log;
            EXPECT_TRUE(ColorConfig::transform(image, String("linear"), String("sRGB")));
            EXPECT_TRUE(ColorConfig::colorSpaceToLinear(image, String("Rec709")));
            EXPECT_EQ(log.lines(), Lines{});
        }
        LogCapture const log;
        EXPECT_FALSE(ColorConfig::colorSpaceToLinear(image, String("nope")));
        EXPECT_EQ(log.lines(), Lines{"Cannot convert from 'nope' to 'linear'."});
    }
}

} // namespace
