// `preview`: a float image out of "linear" into an opaque RGBA8 PNG, whose
// bytes are what colorConfigGenerateRgba8 makes of the same floats.

#include "test_images.h"
#include "tool_test.h"

#include <verra_sdk/colorconfig.h>

#include <filesystem>

namespace verra_test {
namespace {

namespace sdk = orv::verra_sdk;
namespace verra = orv::verra;

constexpr int kWidth = 8;
constexpr int kHeight = 8;

using ToolPreview = ToolTest;

/// The bytes colorConfigGenerateRgba8 makes, in this process, of the first
/// three channels of `image` (grey spread over them).
std::vector<std::uint8_t> modulePreview(ImageFile const& image, char const* to)
{
    verra::Vector2d<verra::float3, true> source;
    source.allocate(static_cast<std::uint32_t>(image.width), static_cast<std::uint32_t>(image.height));
    std::size_t const channels = static_cast<std::size_t>(image.channels);
    for (std::uint32_t i = 0; i < source.count; ++i) {
        float const* p = &image.floats[i * channels];
        source.data[i] = channels < 3 ? verra::float3{p[0], p[0], p[0]} : verra::float3{p[0], p[1], p[2]};
    }
    verra::Vector2d<verra::Rgba8, true> destination;
    EXPECT_TRUE(sdk::colorConfigGenerateRgba8(source, destination, to));
    std::vector<std::uint8_t> bytes;
    for (std::uint32_t i = 0; i < destination.count; ++i) {
        verra::Rgba8 const p = destination.data[i];
        bytes.insert(bytes.end(), {p.r, p.g, p.b, p.a});
    }
    return bytes;
}

void expectOpaqueRgba8Png(ImageFile const& out)
{
    EXPECT_EQ(out.format, "png");
    EXPECT_EQ(out.type, OIIO::TypeDesc::UINT8);
    ASSERT_EQ(out.channels, 4);
    for (std::size_t i = 3; i < out.bytes.size(); i += 4) {
        ASSERT_EQ(out.bytes[i], 255) << "alpha of pixel " << i / 4;
    }
}

TEST_F(ToolPreview, WritesOpaqueRgba8PngMatchingTheModule)
{
    std::string const input = file("render.exr");
    writeFloats(input, kWidth, kHeight, 3, OIIO::TypeDesc::HALF, floatRamp(kWidth, kHeight, 3));
    ToolResult const result = run({"preview", input, file("preview.png")});
    EXPECT_EQ(result.exitCode, 0) << result.err;
    EXPECT_EQ(result.out, input + " -> " + file("preview.png") + "\n");
    EXPECT_EQ(result.err, "");
    ImageFile const out = readImageFile(file("preview.png"));
    expectOpaqueRgba8Png(out);

    sdk::ColorConfig::loadOcioConfig("");
    EXPECT_EQ(out.bytes, modulePreview(readImageFile(input), "sRGB"));
}

TEST_F(ToolPreview, ToOptionChoosesTheColourSpace)
{
    std::string const input = file("render.exr");
    writeFloats(input, kWidth, kHeight, 3, OIIO::TypeDesc::FLOAT, floatRamp(kWidth, kHeight, 3));
    ToolResult const result = run({"preview", "--to", "rec709", input, file("preview.png")});
    EXPECT_EQ(result.exitCode, 0) << result.err;
    ImageFile const out = readImageFile(file("preview.png"));
    expectOpaqueRgba8Png(out);

    sdk::ColorConfig::loadOcioConfig("");
    std::vector<std::uint8_t> const expected = modulePreview(readImageFile(input), "Rec709");
    EXPECT_EQ(out.bytes, expected);
    EXPECT_NE(expected, modulePreview(readImageFile(input), "sRGB"));
}

TEST_F(ToolPreview, GreyIsSpreadAndAlphaDropped)
{
    std::string const input = file("mask.exr");
    writeFloats(input, kWidth, kHeight, 2, OIIO::TypeDesc::FLOAT, floatRamp(kWidth, kHeight, 2));
    ToolResult const result = run({"preview", input, file("preview.png")});
    EXPECT_EQ(result.exitCode, 0) << result.err;
    ImageFile const out = readImageFile(file("preview.png"));
    expectOpaqueRgba8Png(out);
    sdk::ColorConfig::loadOcioConfig("");
    EXPECT_EQ(out.bytes, modulePreview(readImageFile(input), "sRGB"));
}

TEST_F(ToolPreview, EightBitInputIsReadAsFloat)
{
    std::string const input = file("photo.png");
    writeBytes(input, kWidth, kHeight, 4, byteRamp(kWidth, kHeight, 4));
    ToolResult const result = run({"preview", input, file("preview.png")});
    EXPECT_EQ(result.exitCode, 0) << result.err;
    ImageFile const out = readImageFile(file("preview.png"));
    expectOpaqueRgba8Png(out);
    sdk::ColorConfig::loadOcioConfig("");
    EXPECT_EQ(out.bytes, modulePreview(readImageFile(input), "sRGB"));
}

TEST_F(ToolPreview, ConfigSpaceThroughTheModule)
{
    std::string const config = writeConfig(sampleConfig());
    std::string const input = file("render.exr");
    writeFloats(input, kWidth, kHeight, 3, OIIO::TypeDesc::FLOAT, floatRamp(kWidth, kHeight, 3));
    ToolResult const result = run({"preview", "--config", config, "--to", "srgb_tex", input, file("p.png")});
    EXPECT_EQ(result.exitCode, 0) << result.err;
    sdk::ColorConfig::loadOcioConfig(orv::String(config));
    EXPECT_EQ(readImageFile(file("p.png")).bytes, modulePreview(readImageFile(input), "srgb_tex"));
}

TEST_F(ToolPreview, UnknownColourSpaceFails)
{
    std::string const input = file("render.exr");
    writeFloats(input, kWidth, kHeight, 3, OIIO::TypeDesc::FLOAT, floatRamp(kWidth, kHeight, 3));
    ToolResult const result = run({"preview", "--to", "srgbb", input, file("preview.png")});
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_EQ(result.out, "");
    EXPECT_EQ(result.err, "colorconfig: error: unknown colour space 'srgbb'; closest: 'sRGB'\n");
    EXPECT_FALSE(std::filesystem::exists(file("preview.png")));
}

TEST_F(ToolPreview, MissingOrUnreadableInputFails)
{
    std::string const garbage = m_dir.write("garbage.exr", "not an image");
    for (std::string const& input : {file("missing.exr"), garbage}) {
        ToolResult const result = run({"preview", input, file("preview.png")});
        EXPECT_EQ(result.exitCode, 1) << input;
        EXPECT_EQ(result.out, "");
        EXPECT_EQ(result.err.rfind("colorconfig: error: cannot read '" + input + "': ", 0), 0u) << result.err;
        EXPECT_FALSE(std::filesystem::exists(file("preview.png")));
    }
}

TEST_F(ToolPreview, UnwritableOutputFails)
{
    std::string const input = file("render.exr");
    writeFloats(input, kWidth, kHeight, 3, OIIO::TypeDesc::FLOAT, floatRamp(kWidth, kHeight, 3));
    std::string const output = file("no/such/folder/preview.png");
    ToolResult const result = run({"preview", input, output});
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_EQ(result.err.rfind("colorconfig: error: cannot write '" + output + "': ", 0), 0u) << result.err;
}

} // namespace
} // namespace verra_test
