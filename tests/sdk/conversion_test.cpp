// Conversions: one colour (the built-in curves against golden values, and
// what cannot be converted), RGBA8 images in place and float buffers out of
// "linear", whose bytes are those of OpenImageIO's own colorconvert; failures
// with their message.

#include "buffer_routes.h"
#include "rgba8_lookup.h"
#include "support/module_env.h"

#include <OpenImageIO/imagebufalgo.h>

#include <array>
#include <cmath>
#include <functional>
#include <limits>
#include <optional>
#include <type_traits>

using namespace verra_test;
using orv::verra::float3;
using orv::verra::float4;
using orv::verra::Rgba8;
using orv::verra::Vector2d;
using ::testing::Each;
using ::testing::FieldsAre;

namespace {

using Bytes = std::vector<std::uint8_t>;

/// A quiet NaN whose payload and sign must survive.
double const kOddAlpha = -std::nan("0xDEADBEEF");

using OneColor = SdkTest;

// Each curve at its threshold and beside it (the sRGB thresholds take the
// linear segment, the Rec.709 ones the power segment), at 0.5, and at -0.5,
// -0, 1 and 2, which are not clamped: single-precision results, widened.
TEST_F(OneColor, BuiltInCurvesGiveTheirGoldenValues)
{
    std::tuple<char const*, char const*, std::array<float, 3>, std::array<double, 3>> const cases[] = {
        {"sRGB", "linear", {0x1.4b5dccp-5f, 0x1.4b5dcep-5f, 0.5f}, {0x1.9a5c62p-9, 0x1.9a5c7p-9, 0x1.b65b34p-3}},
        {"SRGB", "LINEAR", {-0.5f, -0.0f, 2.0f}, {-0x1.3d0722p-5, -0.0, 0x1.3d0bd2p+2}},
        {"Rec709", "linear", {0x1.4bc6a8p-4f, 0x1.4bc6a6p-4f, 0.5f}, {0x1.2602ep-6, 0x1.26e978p-6, 0x1.09d1cep-2}},
        {"rec709", "Linear", {-0.5f, -0.0f, 2.0f}, {-0x1.c71c72p-4, -0.0, 0x1.0d8fa6p+2}},
        {"linear", "sRGB", {0x1.9a5c38p-9f, 0x1.9a5c3ap-9f, 0.5f}, {0x1.4b5daap-5, 0x1.4b5d9cp-5, 0x1.7880b4p-1}},
        {"Linear", "srgb", {-0.5f, 1.0f, 2.0f}, {-0x1.9d70a4p+2, 0x1.fffffep-1, 0x1.5a6efcp+0}},
        {"linear", "Rec709", {0x1.26e978p-6f, 0x1.26e976p-6f, 0.5f}, {0x1.4ccaa2p-4, 0x1.4bc6a4p-4, 0x1.693946p-1}},
        {"LINEAR", "REC709", {-0.5f, -0.0f, 2.0f}, {-0x1.2p+1, -0.0, 0x1.66fbb4p+0}},
    };
    for (auto const& [from, to, i, o] : cases) {
        Color const in{i[0], i[1], i[2], kOddAlpha}, want{o[0], o[1], o[2], kOddAlpha};
        EXPECT_EQ(bits(ColorConfig::transform(in, from, to)), bits(want)) << from << " -> " << to;
        EXPECT_EQ(bits(OIIO::Strutil::iequals(to, "linear") ? ColorConfig::colorSpaceToLinear(in, from)
                                                            : ColorConfig::linearToColorSpace(in, to)),
                  bits(want));
    }
    EXPECT_EQ(ColorConfig::transform({0.04045, 0, 0, 0}, "sRGB", "linear").r, 0.003130804980173707);
}

TEST_F(OneColor, WhatCannotBeConvertedComesBackBitForBit)
{
    Color const in{std::numeric_limits<double>::signaling_NaN(), std::numeric_limits<double>::denorm_min(), -0.0,
                   kOddAlpha};
    // Equal names; no processor; sRGB and Rec709, which the curves do not
    // chain and OpenImageIO's built-in configuration cannot convert.
    char const* const pairs[] = {"sRGB",   "SRGB",     "linear", "LINEAR", "",       "",     "nope", "NOPE",
                                 "lnf",    "lnf",      "nope",   "linear", "linear", "nope", "",     "linear",
                                 "linear", "\x01sRGB", "srgb",   "rec709", "Rec709", "sRGB"};
    for (std::size_t i = 0; i < std::size(pairs); i += 2) {
        EXPECT_EQ(bits(ColorConfig::transform(in, pairs[i], pairs[i + 1])), bits(in)) << pairs[i] << pairs[i + 1];
    }
    EXPECT_EQ(bits(ColorConfig::colorSpaceToLinear(in, "nope")), bits(in));
    EXPECT_EQ(log.lines(), Lines{});
}

/// OpenImageIO's colorconvert of `pixels` into a new image of `out` (its own
/// conversion from float), whose first `outChannels` channels are converted
/// and read back. Float RGB into bytes goes into four channels, as the
/// module's buffers do.
template <class T>
Bytes reference(T const* pixels, int w, int h, std::string const& from, std::string const& to, int outChannels,
                OIIO::TypeDesc out)
{
    OIIO::TypeDesc const in = std::is_same_v<T, Rgba8> ? OIIO::TypeDesc::UINT8 : OIIO::TypeDesc::FLOAT;
    OIIO::ImageBuf const source(OIIO::ImageSpec(w, h, std::is_same_v<T, float3> ? 3 : 4, in), const_cast<T*>(pixels));
    OIIO::ColorProcessorHandle const processor = colorConfig().createColorProcessor(from, to, "", "");
    EXPECT_TRUE(processor) << from << " -> " << to;
    bool const rgba8 = std::is_same_v<T, float3> && out == OIIO::TypeDesc::UINT8;
    OIIO::ImageBuf converted(OIIO::ImageSpec(w, h, rgba8 ? 4 : outChannels, out));
    OIIO::ROI const roi(0, w, 0, h, 0, 1, 0, outChannels);
    EXPECT_TRUE(OIIO::ImageBufAlgo::colorconvert(converted, source, processor.get(), false, roi));
    Bytes bytes(static_cast<std::size_t>(w * h * outChannels) * out.size());
    EXPECT_TRUE(converted.get_pixels(roi, out, bytes.data()));
    return bytes;
}

template <class T>
Bytes bytesOf(T const* pixels, std::size_t count)
{
    return Bytes(reinterpret_cast<std::uint8_t const*>(pixels), reinterpret_cast<std::uint8_t const*>(pixels + count));
}

/// Converts images 128 pixels wide, of 9 rows (converted directly) and of
/// 128 (through tables, and where each channel takes every byte value beside
/// many values of the others); expects colorconvert's bytes, seen through a
/// second handle. To or from "linear" the conveniences convert; an empty `to`
/// means "sRGB".
void expectLikeColorconvert(std::string const& from, std::string const& to)
{
    auto const byte = [](int value) { return static_cast<std::uint8_t>(value); };
    for (int const height : {9, 128}) {
        Image const image = Image::create(128, height);
        for (int i = 0; i < 128 * height; ++i) {
            image.rgba8()[i] = Rgba8{byte(i), byte(7 * i + (i >> 8)), byte(13 * i + 3 * (i >> 8)), byte(i >> 6)};
        }
        Image const sameImage = image; // NOLINT(performance-unnecessary-copy-initialization): a second handle
        Bytes const want =
            reference(image.rgba8(), 128, height, from, to.empty() ? "sRGB" : to, 4, OIIO::TypeDesc::UINT8);
        EXPECT_TRUE(to == "linear"     ? ColorConfig::colorSpaceToLinear(image, from.c_str())
                    : from == "linear" ? ColorConfig::linearToColorSpace(image, to.c_str())
                                       : ColorConfig::transform(image, from.c_str(), to.c_str()));
        EXPECT_EQ(bytesOf(sameImage.rgba8(), 128u * static_cast<unsigned>(height)), want)
            << from << " -> " << to << ", height " << height;
    }
}

/// expectLikeColorconvert between every two spaces of the config that come
/// after the built-ins and have a processor.
void expectEveryPairLikeColorconvert()
{
    Names const names = texts(ColorConfig::colorSpaces());
    for (std::size_t i = 3; i < names.size(); ++i) {
        for (std::size_t j = 3; j < names.size(); ++j) {
            if (i != j && colorConfig().createColorProcessor(names[i], names[j], "", "")) {
                expectLikeColorconvert(names[i], names[j]);
            }
        }
    }
}

/// The fixture of conversions with and without tables.
class Tables : public SdkTest {
protected:
    /// Loads a config without "sRGB" of "lin", "linear" (an identity here) and "curve" (the sRGB curve), "lut" (a 1D
    /// LUT file), "scaled" (a matrix of a factor a channel, one negative), "mixed" (a matrix with crosstalk) and
    /// "steep" (a power of 16: near 1, one table bucket of floats spans several bytes).
    void loadTableConfig()
    {
        env.dir().write("curve.spi1d", "Version 1\nFrom 0 1\nLength 5\nComponents 1\n{\n0\n0.3\n0.45\n0.8\n1\n}\n");
        loadConfig(ocioConfig({"lin", "linear", "curve"}, {"curve"}, "search_path: .\n") + R"(
  - !<ColorSpace> {name: lut, from_scene_reference: !<FileTransform> {src: curve.spi1d}}
  - !<ColorSpace> {name: scaled, from_scene_reference: !<MatrixTransform> {matrix: [2, 0, 0, 0, 0, 0.5, 0, 0, 0, 0, -1, 0, 0, 0, 0, 1]}}
  - !<ColorSpace> {name: mixed, from_scene_reference: !<MatrixTransform> {matrix: [0.6, 0.3, 0.1, 0, 0.2, 0.7, 0.1, 0, 0.1, 0.1, 0.8, 0, 0, 0, 0, 1]}}
  - !<ColorSpace> {name: steep, from_scene_reference: !<ExponentTransform> {value: 16}}
)",
                   "tables.ocio");
    }
};

using Images = Tables;

TEST_F(Images, ConversionsGiveColorconvertsBytes)
{
    char const* const pairs[] = {"linear", "sRGB", "sRGB", "linear", "linear", "Rec709", "Rec709",
                                 "linear", "lnf",  "sRGB", "sRGB",   "srgb",   "linear", ""};
    for (std::size_t i = 0; i < std::size(pairs); i += 2) {
        expectLikeColorconvert(pairs[i], pairs[i + 1]);
    }
    loadTableConfig();
    expectEveryPairLikeColorconvert();
    // Tables only where each output byte depends on its own input byte alone.
    for (auto const& [from, to, tables] : {std::tuple{"lin", "curve", true},
                                           {"curve", "scaled", true},
                                           {"linear", "sRGB", true},
                                           {"lin", "mixed", false}}) {
        detail::Rgba8Lookup lookup;
        EXPECT_EQ(lookup.build(*colorConfig().createColorProcessor(from, to, "", "")), tables) << from << " -> " << to;
    }
    // A real config of LUT files, when the shared folder is there.
    if (loadShared("imageworks-nuke-default/config.ocio")) {
        expectEveryPairLikeColorconvert();
    }
    // Images without pixels: nothing to convert (colorconvert would die on a width of 0).
    EXPECT_TRUE(ColorConfig::transform(Image::create(0, 5), "linear", "sRGB"));
    EXPECT_TRUE(ColorConfig::transform(Image::create(5, 0), "sRGB", "linear"));
    EXPECT_EQ(log.lines(), Lines{});
}

/// `rgb` bytes with an opaque alpha byte after each pixel's three.
Bytes withOpaqueAlpha(Bytes const& rgb)
{
    Bytes out;
    for (std::size_t i = 0; i + 2 < rgb.size(); i += 3) {
        out.insert(out.end(), {rgb[i], rgb[i + 1], rgb[i + 2], 255});
    }
    return out;
}

using Buffers = Tables;

/// Fills `count` floats at `out` with `values`, then special values (NaNs,
/// infinities, signed zeros, denormals, huge and negative values), then
/// random bit patterns.
void fillFloats(float* out, std::size_t count, std::vector<float> const& values)
{
    std::uint32_t const specials[] = {0x7FC00000u, 0xFFC00000u, 0x7F800001u, 0xFFBFFFFFu, 0x7F800000u, 0xFF800000u,
                                      0x00000000u, 0x80000000u, 0x00000001u, 0x80000001u, 0x007FFFFFu, 0x00800000u,
                                      0xBF000000u, 0x3F800000u, 0x3FC00000u, 0x7149F2CAu, 0xF149F2CAu, 0x7F7FFFFFu};
    std::uint32_t state = 12345;
    for (std::size_t i = 0; i < count; ++i) {
        state = state * 1664525u + 1013904223u;
        std::uint32_t const bits = i < values.size() ? OIIO::bit_cast<float, std::uint32_t>(values[i])
                                   : i < values.size() + std::size(specials) ? specials[i - values.size()]
                                                                             : state;
        out[i] = OIIO::bit_cast<std::uint32_t, float>(bits);
    }
}

/// A buffer of `width` × `height` pixels of T, its bytes those of fillFloats with `values`.
template <class T>
Vector2d<T, true> filled(std::uint32_t width, std::uint32_t height, std::vector<float> const& values = {})
{
    Vector2d<T, true> buffer;
    buffer.allocate(width, height);
    fillFloats(reinterpret_cast<float*>(buffer.data), std::size_t{buffer.count} * sizeof(T) / sizeof(float), values);
    return buffer;
}

/// The three buffer transforms from "linear" into `name` ("" means "sRGB")
/// on `width` × `height` pixels holding, when that is enough for the tables,
/// each of their steps ±2 units in the last place, then what fillFloats adds, every value beside others in
/// the other channels: colorconvert's bits, into a new destination and into
/// one the caller placed. `fast`: whether the tables and the direct float
/// routes must be taken. The buffers hold exactly their pixels: under
/// AddressSanitizer a read past the source (OpenImageIO 2.4.7, converting
/// 3 float channels into 4 over all channels, reads a fourth float at the
/// last pixel) or a write past a destination fails the test.
void expectBuffersLikeColorconvert(char const* name, std::uint32_t width, std::uint32_t height,
                                   std::optional<bool> fast)
{
    std::string const to = *name != '\0' ? name : "sRGB";
    SCOPED_TRACE(to);
    int const w = int(width), h = int(height);
    auto const direct = [&to](float3 const* source, Rgba8* destination, std::uint32_t count) {
        Bytes const bytes = reference(source, int(count), 1, "linear", to, 3, OIIO::TypeDesc::UINT8);
        for (std::size_t i = 0; i < count; ++i) {
            destination[i] = Rgba8{bytes[3 * i], bytes[3 * i + 1], bytes[3 * i + 2], destination[i].a};
        }
        return true;
    };
    OIIO::ColorProcessorHandle const processor = colorConfig().createColorProcessor("linear", to, "", "");
    ASSERT_TRUE(processor);
    detail::FloatRgba8Lookup lookup;
    bool const built = lookup.build(*processor, direct);
    EXPECT_EQ(built, fast.value_or(built));
    if (fast == true) {
        EXPECT_NE(detail::floatRgba8Lookup(processor), nullptr);
        EXPECT_THAT(
            (std::vector{detail::appliesLikeColorconvert(processor, 3), detail::appliesLikeColorconvert(processor, 4)}),
            Each(true));
    }
    std::vector<float> values;
    bool const large = std::size_t{width} * height >= detail::FloatRgba8Lookup::kMinPixels;
    for (float const step : built&& large ? lookup.thresholds() : std::vector<float>{}) {
        float const below = std::nextafter(step, -INFINITY), above = std::nextafter(step, INFINITY);
        values.insert(values.end(),
                      {std::nextafter(below, -INFINITY), below, step, above, std::nextafter(above, INFINITY)});
    }
    Vector2d<float3, true> const source = filled<float3>(width, height, values);
    Vector2d<float3, true> rgb = filled<float3>(width, height);
    Vector2d<float4, true> rgba = filled<float4>(width, height, values);
    Vector2d<Rgba8, true> bytes, placed = filled<Rgba8>(width, height);
    Rgba8* const storage = placed.data;
    Bytes const want8 = withOpaqueAlpha(reference(source.data, w, h, "linear", to, 3, OIIO::TypeDesc::UINT8));
    Bytes const want3 = reference(source.data, w, h, "linear", to, 3, OIIO::TypeDesc::FLOAT);
    Bytes const want4 = reference(rgba.data, w, h, "linear", to, 4, OIIO::TypeDesc::FLOAT);
    EXPECT_THAT((std::vector<bool>{colorConfigGenerateRgba8(source, bytes, name),
                                   colorConfigGenerateRgba8(source, placed, name),
                                   colorConfigTransformRgb(source, rgb, name), colorConfigTransformRgb(rgba, name)}),
                Each(true));
    EXPECT_THAT(std::tuple(bytes.width, bytes.height, placed.data), FieldsAre(width, height, storage));
    EXPECT_EQ(bytesOf(bytes.data, bytes.count), want8);
    EXPECT_EQ(bytesOf(placed.data, placed.count), want8);
    EXPECT_EQ(bytesOf(rgb.data, rgb.count), want3);
    EXPECT_EQ(bytesOf(rgba.data, rgba.count), want4);
}

// Small buffers take colorconvert, large ones the fast routes where they give its bits.
TEST_F(Buffers, SmallAndLargeBuffersGiveColorconvertsBitsForEveryFloat)
{
    for (char const* name : {"sRGB", "Rec709", "linear", ""}) {
        expectBuffersLikeColorconvert(name, 13, 7, std::nullopt);
        expectBuffersLikeColorconvert(name, 1024, 1024, true);
    }
    // A config without "sRGB": the empty name still means it, and OpenImageIO still has a processor for it.
    loadTableConfig();
    for (auto const& [to, tables] :
         {std::pair{"lut", true}, {"curve", true}, {"steep", true}, {"scaled", false}, {"mixed", false}}) {
        expectBuffersLikeColorconvert(to, 1024, 1024, tables);
    }
    for (char const* name : {"curve", "linear", ""}) {
        expectBuffersLikeColorconvert(name, 13, 7, std::nullopt);
    }
    // Every colour space of each real config in the shared folder.
    for (char const* config : {"imageworks-nuke-default/config.ocio", kCgConfig, "ocio-v2-demo/ocio-v2_demo.ocio",
                               "ocio-test-context_test1/config.ocio"}) {
        for (std::string const& to : loadShared(config) ? texts(ColorConfig::colorSpaces()) : Names{}) {
            if (colorConfig().createColorProcessor("linear", to, "", "")) {
                expectBuffersLikeColorconvert(to.c_str(), 1024, 1024, std::nullopt);
            }
        }
    }
    EXPECT_EQ(log.lines(), Lines{});
}

/// A direct route whose byte for channel c of a pixel is `byte(pixel, c)`;
/// it reports `works`.
detail::Rgba8Route routeOf(std::function<std::uint8_t(float3 const&, int)> byte, bool works = true)
{
    return [byte, works](float3 const* source, Rgba8* destination, std::uint32_t count) {
        for (std::uint32_t i = 0; i < count; ++i) {
            destination[i] = Rgba8{byte(source[i], 0), byte(source[i], 1), byte(source[i], 2), destination[i].a};
        }
        return works;
    };
}

TEST_F(Buffers, TablesAreRefusedWhereTheyWouldNotGiveTheDirectRoutesBytes)
{
    auto const scaled = [](float v) {
        return std::isnan(v) ? std::uint8_t{7} : static_cast<std::uint8_t>(std::clamp(v, 0.0f, 1.0f) * 255.0f + 0.5f);
    };
    auto const channel = [](float3 const& p, int c) { return c == 0 ? p.r : c == 1 ? p.g : p.b; };
    // A curve of its own a channel (green's differs from the others'); then
    // the first value that gives green 255.
    auto const good = [&](float3 const& p, int c) { return scaled(channel(p, c) * (c == 1 ? 0.5f : 1.0f)); };
    float top = 2.0f;
    while (scaled(std::nextafter(top, 0.0f) * 0.5f) == 255) {
        top = std::nextafter(top, 0.0f);
    }
    float const belowTop = std::nextafter(std::nextafter(top, 0.0f), 0.0f);
    // Routes whose bytes are no curve a channel somewhere.
    std::function<std::uint8_t(float3 const&, int)> const wrong[] = {
        [&](float3 const& p, int c) { return std::signbit(p.b) && std::isnan(p.b) ? 9 : good(p, c); },
        [&](float3 const& p, int c) { return channel(p, c) > 0.3f && channel(p, c) < 0.31f ? 0 : good(p, c); },
        [&](float3 const& p, int c) { return scaled(1.0f - channel(p, c)); },
        [&](float3 const& p, int c) { return c == 0 ? scaled((p.r + p.g) / 2) : good(p, c); },
        // One value two units in the last place below green's last step.
        [&](float3 const& p, int c) { return c == 1 && p.g == belowTop ? 255 : good(p, c); }};
    OIIO::ColorProcessorHandle const processor = colorConfig().createColorProcessor("linear", "sRGB", "", "");
    for (std::size_t i = 0; i < std::size(wrong); ++i) {
        EXPECT_FALSE(detail::FloatRgba8Lookup().build(*processor, routeOf(wrong[i]))) << "case " << i;
    }
    EXPECT_FALSE(detail::FloatRgba8Lookup().build(*processor, routeOf(good, false)));
}

TEST_F(Buffers, FailuresChangeNoColour)
{
    // Sizes other than the source's, or without pixels: false, and the
    // destinations keep their storage and values.
    Vector2d<float3, true> source = filled<float3>(13, 7);
    using Size = std::pair<std::uint32_t, std::uint32_t>;
    for (auto const& [w, h] : {Size{5, 5}, Size{13, 8}, Size{14, 7}, Size{7, 13}, Size{0, 7}, Size{13, 0}}) {
        Vector2d<Rgba8, true> rgba8 = filled<Rgba8>(w, h);
        Rgba8* const storage = rgba8.data;
        Vector2d<float3, true> rgb = filled<float3>(w, h);
        Vector2d<float4, true> rgba = filled<float4>(w, h);
        EXPECT_THAT((std::vector<bool>{colorConfigGenerateRgba8(source, rgba8, "sRGB"),
                                       colorConfigTransformRgb(source, rgb, "sRGB"),
                                       colorConfigTransformRgb(rgb, source, "sRGB")}),
                    Each(false));
        EXPECT_EQ(colorConfigTransformRgb(rgba, "sRGB"), w * h != 0);
        EXPECT_THAT(std::tuple(rgba8.data, rgba8.width, rgba8.height), FieldsAre(storage, w, h));
        EXPECT_EQ(bytesOf(rgb.data, rgb.count), bytesOf(filled<float3>(w, h).data, rgb.count));
    }
    EXPECT_EQ(log.lines(), Lines{});
    // No processor: one line; the colours stay, the alpha bytes become 255.
    Vector2d<Rgba8, true> rgba8;
    rgba8.allocate(13, 7);
    std::fill(rgba8.data, rgba8.data + rgba8.count, Rgba8{9, 9, 9, 4});
    EXPECT_FALSE(colorConfigGenerateRgba8(source, rgba8, "nope"));
    EXPECT_EQ(bytesOf(rgba8.data, 91), withOpaqueAlpha(Bytes(13 * 7 * 3, 9)));
    EXPECT_EQ(log.lines(), Lines{"Cannot convert from 'linear' to 'nope'."});
}

} // namespace
