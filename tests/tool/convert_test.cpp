// `convert`: the pixels it writes are what the module computes for the same
// input, by the road the module offers for each pixel type.

#include "test_images.h"
#include "tool_test.h"

#include <verra_sdk/colorconfig.h>

#include <OpenImageIO/half.h>

#include <algorithm>
#include <cmath>

namespace verra_test {
namespace {

namespace sdk = orv::verra_sdk;
namespace verra = orv::verra;

constexpr int kWidth = 16;
constexpr int kHeight = 16;

/// `bytes` of `channels` per pixel as RGBA (grey spread, alpha 255 when
/// absent), converted in this process with ColorConfig::transform.
std::vector<std::uint8_t> moduleImage(std::vector<std::uint8_t> const& bytes, int channels, char const* from,
                                      char const* to)
{
    sdk::Image const image = sdk::Image::create(kWidth, kHeight);
    verra::Rgba8* pixels = image.rgba8();
    for (int i = 0; i < kWidth * kHeight; ++i) {
        std::uint8_t const* p = &bytes[static_cast<std::size_t>(i * channels)];
        bool const grey = channels < 3;
        std::uint8_t const alpha = channels == 2 ? p[1] : channels == 4 ? p[3] : 255;
        pixels[i] = {p[0], grey ? p[0] : p[1], grey ? p[0] : p[2], alpha};
    }
    EXPECT_TRUE(sdk::ColorConfig::transform(image, from, to));
    int const outChannels = channels == 1 || channels == 3 ? 3 : 4;
    std::vector<std::uint8_t> result;
    for (int i = 0; i < kWidth * kHeight; ++i) {
        result.insert(result.end(), {pixels[i].r, pixels[i].g, pixels[i].b, pixels[i].a});
        if (outChannels == 3) {
            result.pop_back();
        }
    }
    return result;
}

verra::Vector2d<verra::float3, true> float3Pixels(std::vector<float> const& floats, int channels)
{
    verra::Vector2d<verra::float3, true> pixels;
    pixels.allocate(kWidth, kHeight);
    for (std::uint32_t i = 0; i < pixels.count; ++i) {
        float const* p = &floats[i * static_cast<std::uint32_t>(channels)];
        pixels.data[i] = channels == 1 ? verra::float3{p[0], p[0], p[0]} : verra::float3{p[0], p[1], p[2]};
    }
    return pixels;
}

/// Expects `out` (three float channels) to hold what colorConfigTransformRgb
/// gives from "linear" to `to` for the input's floats (`channels` per pixel,
/// grey spread to RGB), on the built-in configuration.
void expectBufferTransform(ImageFile const& out, std::vector<float> const& in, int channels, char const* to)
{
    sdk::ColorConfig::loadOcioConfig("");
    verra::Vector2d<verra::float3, true> const source = float3Pixels(in, channels);
    verra::Vector2d<verra::float3, true> expected;
    expected.allocate(kWidth, kHeight);
    ASSERT_TRUE(sdk::colorConfigTransformRgb(source, expected, to));
    for (std::uint32_t i = 0; i < expected.count; ++i) {
        ASSERT_EQ(out.floats[3 * i + 0], expected.data[i].r) << "pixel " << i;
        ASSERT_EQ(out.floats[3 * i + 1], expected.data[i].g) << "pixel " << i;
        ASSERT_EQ(out.floats[3 * i + 2], expected.data[i].b) << "pixel " << i;
    }
}

class ToolConvertPixels : public ToolTest {
protected:
    /// Runs convert from `from` to `to` on `input` into `output` and expects
    /// success with the one result line.
    ImageFile convert(std::string const& input, std::string const& output, char const* from, char const* to,
                      std::vector<std::string> extra = {})
    {
        std::vector<std::string> args{"convert", "--from", from, "--to", to};
        args.insert(args.end(), extra.begin(), extra.end());
        args.insert(args.end(), {input, output});
        ToolResult const result = run(args);
        EXPECT_EQ(result.exitCode, 0) << result.err;
        EXPECT_EQ(result.out, input + " -> " + output + "\n");
        EXPECT_EQ(result.err, "");
        return readImageFile(output);
    }
};

TEST_F(ToolConvertPixels, Rgb8PngMatchesTheImageTransform)
{
    std::vector<std::uint8_t> const bytes = byteRamp(kWidth, kHeight, 3);
    writeBytes(file("in.png"), kWidth, kHeight, 3, bytes);
    ImageFile const out = convert(file("in.png"), file("out.png"), "sRGB", "linear");
    EXPECT_EQ(out.format, "png");
    EXPECT_EQ(out.channels, 3);
    EXPECT_EQ(out.type, OIIO::TypeDesc::UINT8);

    sdk::ColorConfig::loadOcioConfig("");
    std::vector<std::uint8_t> const expected = moduleImage(bytes, 3, "sRGB", "linear");
    EXPECT_EQ(out.bytes, expected);
    EXPECT_NE(out.bytes, bytes);
}

TEST_F(ToolConvertPixels, Rgba8PngKeepsItsAlphaAndMatches)
{
    std::vector<std::uint8_t> const bytes = byteRamp(kWidth, kHeight, 4);
    writeBytes(file("in.png"), kWidth, kHeight, 4, bytes);
    ImageFile const out = convert(file("in.png"), file("out.png"), "linear", "Rec709");
    EXPECT_EQ(out.channels, 4);

    sdk::ColorConfig::loadOcioConfig("");
    EXPECT_EQ(out.bytes, moduleImage(bytes, 4, "linear", "Rec709"));
    for (std::size_t i = 3; i < bytes.size(); i += 4) {
        ASSERT_EQ(out.bytes[i], bytes[i]) << "alpha of pixel " << i / 4;
    }
}

TEST_F(ToolConvertPixels, GreyIsExpandedToRgb)
{
    std::vector<std::uint8_t> const bytes = byteRamp(kWidth, kHeight, 1);
    writeBytes(file("grey.png"), kWidth, kHeight, 1, bytes);
    ImageFile const out = convert(file("grey.png"), file("out.png"), "sRGB", "linear");
    EXPECT_EQ(out.channels, 3);
    sdk::ColorConfig::loadOcioConfig("");
    EXPECT_EQ(out.bytes, moduleImage(bytes, 1, "sRGB", "linear"));
}

TEST_F(ToolConvertPixels, GreyWithAlphaIsExpandedToRgba)
{
    std::vector<std::uint8_t> const bytes = byteRamp(kWidth, kHeight, 2);
    writeBytes(file("grey.png"), kWidth, kHeight, 2, bytes);
    ImageFile const out = convert(file("grey.png"), file("out.tif"), "linear", "sRGB");
    EXPECT_EQ(out.format, "tiff");
    EXPECT_EQ(out.channels, 4);
    sdk::ColorConfig::loadOcioConfig("");
    EXPECT_EQ(out.bytes, moduleImage(bytes, 2, "linear", "sRGB"));
}

TEST_F(ToolConvertPixels, Rgb8WithConfigSpaces)
{
    std::string const config = writeConfig(sampleConfig());
    std::vector<std::uint8_t> const bytes = byteRamp(kWidth, kHeight, 3);
    writeBytes(file("in.png"), kWidth, kHeight, 3, bytes);
    ImageFile const out = convert(file("in.png"), file("out.png"), "SRGB_TEX", "lin", {"--config", config});
    sdk::ColorConfig::loadOcioConfig(orv::String(config));
    EXPECT_EQ(out.bytes, moduleImage(bytes, 3, "srgb_tex", "lin"));
    EXPECT_NE(out.bytes, bytes);
}

TEST_F(ToolConvertPixels, FloatRgbOutOfLinearMatchesTheBufferTransform)
{
    writeFloats(file("in.exr"), kWidth, kHeight, 3, OIIO::TypeDesc::FLOAT, floatRamp(kWidth, kHeight, 3));
    ImageFile const in = readImageFile(file("in.exr"));
    ImageFile const out = convert(file("in.exr"), file("out.exr"), "linear", "sRGB");
    EXPECT_EQ(out.format, "openexr");
    EXPECT_EQ(out.type, OIIO::TypeDesc::FLOAT);
    ASSERT_EQ(out.channels, 3);
    expectBufferTransform(out, in.floats, 3, "sRGB");
    EXPECT_NE(out.floats, in.floats);
}

TEST_F(ToolConvertPixels, HalfRgbaOutOfLinearKeepsHalfAndMatches)
{
    writeFloats(file("in.exr"), kWidth, kHeight, 4, OIIO::TypeDesc::HALF, floatRamp(kWidth, kHeight, 4));
    ImageFile const in = readImageFile(file("in.exr"));
    ImageFile const out = convert(file("in.exr"), file("out.exr"), "linear", "Rec709");
    EXPECT_EQ(out.type, OIIO::TypeDesc::HALF);
    ASSERT_EQ(out.channels, 4);

    sdk::ColorConfig::loadOcioConfig("");
    verra::Vector2d<verra::float4, true> pixels;
    pixels.allocate(kWidth, kHeight);
    std::copy(in.floats.begin(), in.floats.end(), &pixels.data[0].r);
    ASSERT_TRUE(sdk::colorConfigTransformRgb(pixels, "Rec709"));
    for (std::uint32_t i = 0; i < 4 * pixels.count; ++i) {
        float const value = (&pixels.data[0].r)[i];
        ASSERT_EQ(out.floats[i], static_cast<float>(half(value))) << "value " << i;
    }
}

TEST_F(ToolConvertPixels, FloatGreyOutOfLinearIsExpandedToRgb)
{
    writeFloats(file("grey.exr"), kWidth, kHeight, 1, OIIO::TypeDesc::FLOAT, floatRamp(kWidth, kHeight, 1));
    ImageFile const in = readImageFile(file("grey.exr"));
    ImageFile const out = convert(file("grey.exr"), file("out.exr"), "linear", "sRGB");
    ASSERT_EQ(out.channels, 3);
    expectBufferTransform(out, in.floats, 1, "sRGB");
}

TEST_F(ToolConvertPixels, OtherFloatConversionsUseTheSharedConfig)
{
    std::string const config = writeConfig(sampleConfig());
    writeFloats(file("in.exr"), kWidth, kHeight, 3, OIIO::TypeDesc::FLOAT, floatRamp(kWidth, kHeight, 3));
    ImageFile const in = readImageFile(file("in.exr"));
    ImageFile const out = convert(file("in.exr"), file("out.exr"), "srgb_tex", "lin", {"--config", config});
    ASSERT_EQ(out.channels, 3);

    // The single-colour transform takes the same processor of the shared
    // config for this pair, one pixel at a time.
    sdk::ColorConfig::loadOcioConfig(orv::String(config));
    bool changed = false;
    for (std::size_t i = 0; i < in.floats.size(); i += 3) {
        orv::math::RgbaT<double> const c = sdk::ColorConfig::transform(
            {in.floats[i], in.floats[i + 1], in.floats[i + 2], 1.0}, "srgb_tex", "lin");
        ASSERT_FLOAT_EQ(out.floats[i + 0], static_cast<float>(c.r)) << "pixel " << i / 3;
        ASSERT_FLOAT_EQ(out.floats[i + 1], static_cast<float>(c.g)) << "pixel " << i / 3;
        ASSERT_FLOAT_EQ(out.floats[i + 2], static_cast<float>(c.b)) << "pixel " << i / 3;
        changed = changed || out.floats[i] != in.floats[i];
    }
    EXPECT_TRUE(changed);
}

TEST_F(ToolConvertPixels, Uint16TiffIsConvertedAsFloatAndStaysUint16)
{
    std::vector<float> ramp = floatRamp(kWidth, kHeight, 3);
    for (float& value : ramp) {
        value = std::clamp(value, 0.0f, 1.0f);
    }
    writeFloats(file("in.tif"), kWidth, kHeight, 3, OIIO::TypeDesc::UINT16, ramp);
    ImageFile const in = readImageFile(file("in.tif"));
    ImageFile const out = convert(file("in.tif"), file("out.tif"), "linear", "sRGB");
    EXPECT_EQ(out.type, OIIO::TypeDesc::UINT16);
    ASSERT_EQ(out.channels, 3);

    sdk::ColorConfig::loadOcioConfig("");
    verra::Vector2d<verra::float3, true> const source = float3Pixels(in.floats, 3);
    verra::Vector2d<verra::float3, true> expected;
    expected.allocate(kWidth, kHeight);
    ASSERT_TRUE(sdk::colorConfigTransformRgb(source, expected, "sRGB"));
    // The file holds 16-bit steps: the converted floats rounded to the nearest.
    float const step = 1.0f / 65535.0f;
    for (std::uint32_t i = 0; i < expected.count; ++i) {
        float const* e = &expected.data[i].r;
        for (int c = 0; c < 3; ++c) {
            float const want = std::round(std::clamp(e[c], 0.0f, 1.0f) * 65535.0f) * step;
            ASSERT_NEAR(out.floats[3 * i + static_cast<std::uint32_t>(c)], want, step * 1e-3f) << "pixel " << i;
        }
    }
}

} // namespace
} // namespace verra_test
