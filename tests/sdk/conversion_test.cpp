// Conversions: one colour (the built-in curves against golden values, the
// processor path, the route taken), a file's colour space from its name,
// RGBA8 images in place and float buffers out of "linear", whose bytes are
// those of OpenImageIO's own colorconvert; failures with their message.

#include "rgba8_lookup.h"
#include "sdk_test.h"

#include <verra_sdk/color_route.h>

#include <OpenImageIO/imagebufalgo.h>
#include <OpenImageIO/strutil.h>

#include <sys/mman.h>
#include <unistd.h>

#include <cmath>
#include <cstdlib>
#include <filesystem>
#include <limits>
#include <type_traits>

using namespace orv::verra_sdk;
using namespace verra_test;
using orv::verra::float3;
using orv::verra::float4;
using orv::verra::Rgba8;
using orv::verra::Vector2d;

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
    struct Case {
        char const* from;
        char const* to;
        float in[3];
        double out[3];
    } const cases[] = {
        {"sRGB", "linear", {0x1.4b5dccp-5f, 0x1.4b5dcep-5f, 0.5f}, {0x1.9a5c62p-9, 0x1.9a5c7p-9, 0x1.b65b34p-3}},
        {"SRGB", "LINEAR", {-0.5f, -0.0f, 2.0f}, {-0x1.3d0722p-5, -0.0, 0x1.3d0bd2p+2}},
        {"Rec709", "linear", {0x1.4bc6a8p-4f, 0x1.4bc6a6p-4f, 0.5f}, {0x1.2602ep-6, 0x1.26e978p-6, 0x1.09d1cep-2}},
        {"rec709", "Linear", {-0.5f, -0.0f, 2.0f}, {-0x1.c71c72p-4, -0.0, 0x1.0d8fa6p+2}},
        {"linear", "sRGB", {0x1.9a5c38p-9f, 0x1.9a5c3ap-9f, 0.5f}, {0x1.4b5daap-5, 0x1.4b5d9cp-5, 0x1.7880b4p-1}},
        {"Linear", "srgb", {-0.5f, 1.0f, 2.0f}, {-0x1.9d70a4p+2, 0x1.fffffep-1, 0x1.5a6efcp+0}},
        {"linear", "Rec709", {0x1.26e978p-6f, 0x1.26e976p-6f, 0.5f}, {0x1.4ccaa2p-4, 0x1.4bc6a4p-4, 0x1.693946p-1}},
        {"LINEAR", "REC709", {-0.5f, -0.0f, 2.0f}, {-0x1.2p+1, -0.0, 0x1.66fbb4p+0}},
    };
    for (Case const& c : cases) {
        Color const in{c.in[0], c.in[1], c.in[2], kOddAlpha};
        Color const want{c.out[0], c.out[1], c.out[2], kOddAlpha};
        EXPECT_EQ(bits(ColorConfig::transform(in, c.from, c.to)), bits(want)) << c.from << " -> " << c.to;
        bool const toLinear = OIIO::Strutil::iequals(c.to, "linear");
        Color const viaConvenience =
            toLinear ? ColorConfig::colorSpaceToLinear(in, c.from) : ColorConfig::linearToColorSpace(in, c.to);
        EXPECT_EQ(bits(viaConvenience), bits(want));
    }
    EXPECT_EQ(ColorConfig::transform({0.04045, 0, 0, 0}, "sRGB", "linear").r, 0.003130804980173707);
}

TEST_F(OneColor, WhatCannotBeConvertedComesBackBitForBit)
{
    Color const in{std::numeric_limits<double>::signaling_NaN(), std::numeric_limits<double>::denorm_min(), -0.0,
                   kOddAlpha};
    // Equal names; no processor; sRGB and Rec709, which the curves do not
    // chain and OpenImageIO's built-in configuration cannot convert.
    for (auto const& [from, to] : {std::pair<char const*, char const*>{"sRGB", "SRGB"}, {"linear", "LINEAR"},
                                   {"", ""}, {"nope", "NOPE"}, {"lnf", "lnf"}, {"nope", "linear"}, {"linear", "nope"},
                                   {"", "linear"}, {"linear", "\x01sRGB"}, {"srgb", "rec709"}, {"Rec709", "sRGB"}}) {
        EXPECT_EQ(bits(ColorConfig::transform(in, from, to)), bits(in)) << from << " -> " << to;
    }
    EXPECT_EQ(bits(ColorConfig::colorSpaceToLinear(in, "nope")), bits(in));
    EXPECT_EQ(log.lines(), Lines{});
}

TEST_F(OneColor, OtherPairsGoThroughAProcessorOfTheConfiguration)
{
    auto const expectLikeTheProcessor = [](char const* from, char const* to) {
        float rgb[3] = {0.5f, 0.2f, 1.5f};
        colorConfig().createColorProcessor(from, to, "", "")->apply(rgb, 1, 1, 3, 4, 12, 12);
        Color const want{rgb[0], rgb[1], rgb[2], kOddAlpha};
        EXPECT_EQ(bits(ColorConfig::transform({0.5, 0.2, 1.5, kOddAlpha}, from, to)), bits(want));
        EXPECT_NE(rgb[0], 0.5f) << from << " -> " << to;
    };
    expectLikeTheProcessor("lnf", "sRGB"); // "lnf": OpenImageIO's alias of linear, not a built-in name
    // The built-in names keep their curves whatever a config calls them.
    OcioConfigText config;
    config.colorSpaces = {"linear", "srgb", "rec709"};
    config.srgbSpaces = {"rec709"}; // its "srgb" is an identity, its "rec709" an sRGB curve
    loadConfig(config, "names.ocio");
    EXPECT_NEAR(ColorConfig::linearToColorSpace({0.5, 0, 0, 1}, "Rec709").r, 0.705515, 1e-6);
    EXPECT_NEAR(ColorConfig::linearToColorSpace({0.5, 0, 0, 1}, "sRGB").r, 0.7353569, 1e-7);
    expectLikeTheProcessor("srgb", "rec709");
}

TEST_F(OneColor, RouteTellsWhichWayTheTransformGoes)
{
    char const* const cases[][3] = {
        {"sRGB", "SRGB", "same"}, {"", "", "same"}, {"linear", "sRGB", "built-in curve"},
        {"REC709", "Linear", "built-in curve"}, {"lnf", "sRGB", "processor"}, {"sRGB", "lnf", "processor"},
        {"linear", "lnf", "none"}, {"sRGB", "Rec709", "none"}, {"nope", "linear", "none"}};
    for (auto const& c : cases) {
        EXPECT_STREQ(colorRouteName(colorRoute(c[0], c[1])), c[2]) << c[0] << " -> " << c[1];
    }
}

// Without $OCIO, OpenColorIO's current config answers "default" for every
// file, which counts as no answer: the name search, then the extension.
TEST_F(OneColor, FileNameGivesItsColorSpace)
{
    char const* const builtIn[][3] = {// name, guess with fallback, without
        {"tex.png", "sRGB", ""}, {"dir/sub/t.pNG", "sRGB", ""}, {"a.JPG", "sRGB", ""}, {"a.tga", "sRGB", ""},
        {"a.bmp", "sRGB", ""}, {"\x01.PNG", "sRGB", ""}, {"a.jpeg", "linear", ""}, {"a.tif", "linear", ""},
        {"noextension", "linear", ""}, {"", "linear", ""}, {"dir.png/file", "linear", ""}, {"a.png.exr", "linear", ""},
        {"plate_srgb_v1.exr", "sRGB", "sRGB"}, {"plate_Rec709.png", "Rec709", "Rec709"},
        {"beauty_linear.png", "linear", "linear"}};
    char const* const loaded[][3] = {
        {"plate_srgb_tex.exr", "srgb_tex", "srgb_tex"}, {"shot_lin_v2.png", "lin", "lin"},
        {"plate_sRGB.exr", "linear", ""}, {"plate.png", "sRGB", ""}};
    auto const check = [](char const* const* c) {
        EXPECT_STREQ(ColorConfig::parseColorSpace(c[0], true).buf(), c[1]) << c[0];
        EXPECT_STREQ(ColorConfig::parseColorSpace(c[0], false).buf(), c[2]) << c[0];
    };
    std::for_each(std::begin(builtIn), std::end(builtIn), check);
    OcioConfigText config;
    config.colorSpaces = {"lin", "srgb_tex"};
    loadConfig(config, "parse.ocio");
    std::for_each(std::begin(loaded), std::end(loaded), check);
}

/// OpenImageIO's colorconvert of a copy of `pixels`, read back as the first
/// `outChannels` channels of `out`.
template <class T>
Bytes reference(T const* pixels, int w, int h, std::string const& from, std::string const& to, int outChannels,
                OIIO::TypeDesc out)
{
    bool const bytes8 = std::is_same_v<T, Rgba8>;
    OIIO::TypeDesc const in = bytes8 ? OIIO::TypeDesc::UINT8 : OIIO::TypeDesc::FLOAT;
    OIIO::ImageSpec const spec(w, h, std::is_same_v<T, float3> ? 3 : 4, in);
    OIIO::ImageBuf const source(spec, const_cast<T*>(pixels));
    OIIO::ColorProcessorHandle const processor = colorConfig().createColorProcessor(from, to, "", "");
    EXPECT_TRUE(processor) << from << " -> " << to;
    OIIO::ImageBuf const converted = OIIO::ImageBufAlgo::colorconvert(source, processor.get(), false);
    Bytes bytes(static_cast<std::size_t>(w * h * outChannels) * out.size());
    EXPECT_TRUE(converted.get_pixels(OIIO::ROI(0, w, 0, h, 0, 1, 0, outChannels), out, bytes.data()));
    return bytes;
}

template <class T>
Bytes bytesOf(T const* pixels, std::size_t count)
{
    auto const* first = reinterpret_cast<std::uint8_t const*>(pixels);
    return Bytes(first, first + count * sizeof(T));
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
        EXPECT_TRUE(to == "linear"   ? ColorConfig::colorSpaceToLinear(image, from.c_str())
                    : from == "linear" ? ColorConfig::linearToColorSpace(image, to.c_str())
                                       : ColorConfig::transform(image, from.c_str(), to.c_str()));
        EXPECT_EQ(bytesOf(sameImage.rgba8(), 128u * static_cast<unsigned>(height)), want) << from << " -> " << to << ", height " << height;
    }
}

using Images = SdkTest;

TEST_F(Images, ConversionsGiveColorconvertsBytes)
{
    for (auto const& [from, to] : {std::pair<char const*, char const*>{"linear", "sRGB"}, {"sRGB", "linear"},
                                   {"linear", "Rec709"}, {"Rec709", "linear"}, {"lnf", "sRGB"}, {"sRGB", "srgb"},
                                   {"linear", ""}}) {
        expectLikeColorconvert(from, to);
    }
    auto const everyPair = [] {
        Names const names = texts(ColorConfig::colorSpaces());
        for (std::size_t i = 3; i < names.size(); ++i) {
            for (std::size_t j = 3; j < names.size(); ++j) {
                if (i != j && colorConfig().createColorProcessor(names[i], names[j], "", "")) {
                    expectLikeColorconvert(names[i], names[j]);
                }
            }
        }
    };
    // Channel crosstalk (no tables possible), curves and scales per channel.
    std::string const path = env.dir().write("mix.ocio", R"(ocio_profile_version: 2.1
roles: {default: lin}
displays: {D: [!<View> {name: V, colorspace: lin}]}
colorspaces:
  - !<ColorSpace> {name: lin}
  - !<ColorSpace> {name: mixed, to_scene_reference: !<MatrixTransform>
      {matrix: [0.6, 0.3, 0.1, 0, 0.2, 0.7, 0.1, 0, 0.1, 0.1, 0.8, 0, 0, 0, 0, 1]}}
  - !<ColorSpace> {name: curve, to_scene_reference: !<ExponentWithLinearTransform> {gamma: 2.4, offset: 0.055}}
  - !<ColorSpace> {name: scaled, to_scene_reference: !<MatrixTransform>
      {matrix: [2, 0, 0, 0, 0, 0.5, 0, 0, 0, 0, 1.5, 0, 0, 0, 0, 1]}}
)");
    ASSERT_EQ(load(path), "Using specified OCIO config: " + path);
    everyPair();
    // Tables only where each output byte depends on its own input byte alone.
    for (auto const& [from, to, tables] : {std::tuple{"lin", "curve", true}, {"curve", "scaled", true},
                                           {"linear", "sRGB", true}, {"lin", "mixed", false}}) {
        detail::Rgba8Lookup lookup;
        EXPECT_EQ(lookup.build(*colorConfig().createColorProcessor(from, to, "", "")), tables) << from << " -> " << to;
    }
    // The real configs of the shared folder, when present, with what the
    // module lists after its own spaces (the third config's "linear", "sRGB"
    // and "rec709" are shadowed by them).
    char const* root = std::getenv("VERRA_SHARED_CONFIGS");
    std::pair<char const*, char const*> const realConfigs[] = {
        {"aces-cg-config-v1.0.0_aces-v1.3_ocio-v2.1/cg-config-v1.0.0_aces-v1.3_ocio-v2.1.ocio",
         "ACES2065-1|ACEScc|ACEScct|ACEScg|Linear P3-D65|Linear Rec.2020|Linear Rec.709 (sRGB)|Gamma 1.8 Rec.709 - "
         "Texture|Gamma 2.2 AP1 - Texture|Gamma 2.2 Rec.709 - Texture|Gamma 2.4 Rec.709 - Texture|sRGB Encoded AP1 - "
         "Texture|sRGB - Texture|Raw"},
        {"ocio-v2-demo/ocio-v2_demo.ocio", "Rec.1886 / Rec.709 video|Rec.2100-PQ|ACEScg|ACES2065-1|scene-linear "
         "Rec.709-sRGB|Raw|ACEScct|ACEScc|ARRI LogC|RED Log3G10 / REDWideGamutRGB|Sony SLog3 / SGamut3|Log film "
         "scan (ADX10)"},
        {"imageworks-nuke-default/config.ocio",
         "sRGBf|Cineon|Gamma1.8|Gamma2.2|Panalog|REDLog|ViperLog|AlexaV3LogC|PLogLin|SLog|raw"},
        {"ocio-test-context_test1/config.ocio", "reference|raw|plain_lut1_cs|shot1_lut1_cs|shot2_lut1_cs|shot2_lut2_cs|"
         "lut3_cs|lut4_cs|SHOT_lut1_cs|lut_path_cs|context_camera|arri|sony"},
        // Too new for OpenColorIO 2.1: OpenImageIO keeps its built-in spaces.
        {"aces-cg-config-v2.1.0_aces-v1.3_ocio-v2.3/cg-config-v2.1.0_aces-v1.3_ocio-v2.3.ocio", ""}};
    for (auto const& [file, listed] : realConfigs) {
        if (root != nullptr && std::filesystem::is_directory(root)) {
            std::string const real = std::filesystem::canonical(std::string(root) + "/" + file).string();
            EXPECT_EQ(load(real), "Using specified OCIO config: " + real);
            std::string const all = std::string("linear|sRGB|Rec709") + (*listed != '\0' ? "|" : "") + listed;
            EXPECT_EQ(OIIO::Strutil::join(texts(ColorConfig::colorSpaces()), "|"), all);
            everyPair();
        }
    }
    EXPECT_EQ(log.lines(), Lines{});
}

TEST_F(Images, FailuresAndShortcutsLeaveThePixelsAlone)
{
    // A config whose LUT file is missing lists the space but cannot convert it.
    std::string const path = env.dir().write("lut.ocio", "ocio_profile_version: 2.1\nroles: {default: lin}\n"
        "colorspaces: [!<ColorSpace> {name: lin},\n"
        "  !<ColorSpace> {name: log, to_scene_reference: !<FileTransform> {src: no.spi1d}}]\n");
    ASSERT_EQ(load(path), "Using specified OCIO config: " + path);
    EXPECT_STREQ(ColorConfig::findColorSpace("LOG").buf(), "log");
    for (Image const& invalid : {Image(), Image::create(-1, 4), Image::create(70000, 70000)}) {
        EXPECT_FALSE(ColorConfig::transform(invalid, "linear", "sRGB"));
    }
    Image const image = Image::create(32, 8);
    std::fill(image.rgba8(), image.rgba8() + 256, Rgba8{200, 100, 50, 25});
    Bytes const before = bytesOf(image.rgba8(), 256);
    char const* const cases[][3] = {// equal names after the "sRGB" default need no conversion
        {"", "", ""}, {"", "sRGB", ""}, {"sRGB", "", ""}, {"linear", "linear", ""}, {"nope", "nope", ""},
        {"log", "linear", "Cannot convert from 'log' to 'linear'."},
        {"linear", "\x01sRGB", "Cannot convert from 'linear' to '\x01sRGB'."},
        {"", "nope", "Cannot convert from 'sRGB' to 'nope'."},
        {"sRGB", "Rec709", "Cannot convert from 'sRGB' to 'Rec709'."}};
    for (auto const& c : cases) {
        log.clear();
        orv::String const from(c[0]);
        EXPECT_EQ(ColorConfig::transform(image, from, c[1]), *c[2] == '\0') << c[0] << " -> " << c[1];
        EXPECT_EQ(log.lines(), *c[2] != '\0' ? Lines{c[2]} : Lines{});
        EXPECT_STREQ(from.buf(), c[0]);
    }
    EXPECT_EQ(bytesOf(image.rgba8(), 256), before);
    // Images without pixels: nothing to convert, but the processor is asked for.
    for (auto const& [width, height] : {std::pair<int, int>{0, 5}, {5, 0}, {0, 0}}) {
        log.clear();
        EXPECT_TRUE(ColorConfig::transform(Image::create(width, height), "linear", "sRGB"));
        EXPECT_FALSE(ColorConfig::colorSpaceToLinear(Image::create(width, height), "nope"));
        EXPECT_EQ(log.lines(), Lines{"Cannot convert from 'nope' to 'linear'."});
    }
}

/// A buffer of `width` × `height` pixels of T, its floats spread over [-0.1, 1.3].
template <class T>
Vector2d<T, true> makeBuffer(std::uint32_t width, std::uint32_t height)
{
    Vector2d<T, true> buffer;
    buffer.allocate(width, height);
    auto* values = reinterpret_cast<float*>(buffer.data);
    for (std::size_t i = 0; i < std::size_t{buffer.count} * sizeof(T) / sizeof(float); ++i) {
        values[i] = static_cast<float>(i * 37 % 141) / 100.0f - 0.1f;
    }
    return buffer;
}

/// The r, g, b bytes of RGBA8 pixels; nothing when an alpha byte is not 255.
Bytes opaqueColours(Vector2d<Rgba8, true> const& buffer)
{
    Bytes out;
    for (Rgba8 const* p = buffer.data; p != buffer.data + buffer.count; ++p) {
        if (p->a != 255) {
            return {};
        }
        out.insert(out.end(), {p->r, p->g, p->b});
    }
    return out;
}

/// A buffer of `width` × `height` pixels whose storage ends at `end`, memory
/// it does not own: the storage is taken back before the buffer dies.
template <class T>
struct Placed {
    Placed(std::uint8_t* end, std::uint32_t width, std::uint32_t height)
    {
        buffer.data = reinterpret_cast<T*>(end) - width * height;
        buffer.width = width;
        buffer.height = height;
        buffer.count = width * height;
    }
    ~Placed() { buffer.data = nullptr; }
    Placed(Placed const&) = delete;
    Placed& operator=(Placed const&) = delete;
    Vector2d<T, true> buffer;
};

using Buffers = SdkTest;

TEST_F(Buffers, ConversionsOutOfLinearGiveColorconvertsValues)
{
    // A float RGB source and an RGBA8 destination that end where an
    // unreadable page begins: OpenImageIO 2.4.7, converting 3 float channels
    // into 4 over all channels, reads a fourth float per pixel, past the end
    // at the last one; and nothing may be written past the destination.
    std::size_t const page = static_cast<std::size_t>(::sysconf(_SC_PAGESIZE));
    auto* const base = static_cast<std::uint8_t*>(
        ::mmap(nullptr, 4 * page, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0));
    ASSERT_NE(base, MAP_FAILED);
    ASSERT_EQ(::mprotect(base + page, page, PROT_NONE) | ::mprotect(base + 3 * page, page, PROT_NONE), 0);
    auto const check = [&](char const* name, bool alphaKept) {
        std::string const to = *name != '\0' ? name : "sRGB";
        Vector2d<float3, true> const values = makeBuffer<float3>(13, 7);
        Placed<float3> source(base + page, 13, 7);
        std::copy(values.data, values.data + 91, source.buffer.data);
        Placed<Rgba8> placed(base + 3 * page, 13, 7);
        Rgba8* const storage = placed.buffer.data;
        Vector2d<Rgba8, true> rgba8;
        Vector2d<float3, true> rgb = makeBuffer<float3>(13, 7);
        Vector2d<float4, true> rgba = makeBuffer<float4>(13, 7);
        Bytes const want8 = reference(values.data, 13, 7, "linear", to, 3, OIIO::TypeDesc::UINT8);
        Bytes const want3 = reference(values.data, 13, 7, "linear", to, 3, OIIO::TypeDesc::FLOAT);
        Bytes const want4 = reference(rgba.data, 13, 7, "linear", to, 4, OIIO::TypeDesc::FLOAT);
        EXPECT_TRUE(colorConfigGenerateRgba8(source.buffer, rgba8, name) &&
                    colorConfigGenerateRgba8(source.buffer, placed.buffer, name) &&
                    colorConfigTransformRgb(source.buffer, rgb, name) && colorConfigTransformRgb(rgba, name)) << name;
        EXPECT_TRUE(rgba8.width == 13 && rgba8.height == 7 && placed.buffer.data == storage);
        EXPECT_EQ(opaqueColours(rgba8), want8) << name;
        EXPECT_EQ(opaqueColours(placed.buffer), want8) << name;
        EXPECT_EQ(bytesOf(rgb.data, rgb.count), want3) << name;
        EXPECT_EQ(bytesOf(rgba.data, rgba.count), want4) << name;
        EXPECT_EQ(bytesOf(source.buffer.data, 91), bytesOf(values.data, 91));
        EXPECT_TRUE(to != "linear" || want3 == bytesOf(values.data, 91));
        Vector2d<float4, true> const before = makeBuffer<float4>(13, 7);
        for (std::uint32_t i = 0; i < rgba.count && alphaKept; ++i) {
            EXPECT_EQ(rgba.data[i].a, before.data[i].a);
        }
    };
    for (char const* name : {"sRGB", "Rec709", "linear", ""}) {
        check(name, true);
    }
    // A config without "sRGB": the empty name still means it, and OpenImageIO
    // still has a processor for it. Alpha goes through the processor, which
    // leaves it alone unless the config's transform says otherwise.
    OcioConfigText config;
    config.colorSpaces = {"linear", "srgb_tex"};
    config.srgbSpaces = {"srgb_tex"};
    loadConfig(config, "buffers.ocio");
    check("srgb_tex", false);
    check("linear", true); // an identity here
    check("", true);
    ::munmap(base, 4 * page);
    EXPECT_EQ(log.lines(), Lines{});
}

TEST_F(Buffers, FailuresChangeNoColour)
{
    using Size = std::pair<std::uint32_t, std::uint32_t>;
    Vector2d<float3, true> source = makeBuffer<float3>(13, 7);
    Bytes const sourceBytes = bytesOf(source.data, source.count);
    for (Size const& size : {Size{5, 5}, Size{13, 8}, Size{14, 7}, Size{7, 13}, Size{0, 7}, Size{13, 0}}) {
        Vector2d<Rgba8, true> rgba8;
        rgba8.allocate(size.first, size.second);
        Rgba8* const storage = rgba8.data;
        Vector2d<float3, true> rgb = makeBuffer<float3>(size.first, size.second);
        Vector2d<float4, true> rgba = makeBuffer<float4>(size.first, size.second);
        EXPECT_FALSE(colorConfigGenerateRgba8(source, rgba8, "sRGB") || colorConfigTransformRgb(source, rgb, "sRGB") ||
                     colorConfigTransformRgb(rgb, source, "sRGB"));
        EXPECT_EQ(colorConfigTransformRgb(rgba, "sRGB"), size.first * size.second != 0);
        EXPECT_TRUE(rgba8.data == storage && Size(rgba8.width, rgba8.height) == size);
        EXPECT_EQ(bytesOf(rgb.data, rgb.count), bytesOf(makeBuffer<float3>(size.first, size.second).data, rgb.count));
    }
    // An empty destination gets storage first (of no pixels here), then the
    // sizes fail; a source too large to count in 32 bits gets it nothing.
    Vector2d<float3, true> noPixels = makeBuffer<float3>(0, 7);
    Vector2d<Rgba8, true> rgba8;
    EXPECT_FALSE(colorConfigGenerateRgba8(noPixels, rgba8, "sRGB"));
    EXPECT_TRUE(rgba8.data != nullptr && rgba8.height == 7);
    Vector2d<float3, true> huge; // sizes without storage: never read
    huge.width = huge.height = 65536;
    Vector2d<Rgba8, true> none;
    EXPECT_FALSE(colorConfigGenerateRgba8(huge, none, "sRGB"));
    EXPECT_TRUE(none.data == nullptr && none.width + none.height + none.count == 0);
    EXPECT_EQ(log.lines(), Lines{});
    // No processor: one line each; the colours stay, the alpha bytes become 255.
    rgba8.allocate(13, 7);
    std::fill(rgba8.data, rgba8.data + rgba8.count, Rgba8{9, 9, 9, 4});
    Vector2d<float3, true> rgb = makeBuffer<float3>(13, 7);
    Vector2d<float4, true> rgba = makeBuffer<float4>(13, 7);
    EXPECT_FALSE(colorConfigGenerateRgba8(source, rgba8, "nope") || colorConfigTransformRgb(source, rgb, "Rec 709") ||
                 colorConfigTransformRgb(rgba, "lin"));
    EXPECT_EQ(opaqueColours(rgba8), Bytes(13 * 7 * 3, 9));
    EXPECT_EQ(bytesOf(rgb.data, rgb.count), sourceBytes);
    EXPECT_EQ(bytesOf(rgba.data, rgba.count), bytesOf(makeBuffer<float4>(13, 7).data, 91));
    Lines const lines{"Cannot convert from 'linear' to 'nope'.", "Cannot convert from 'linear' to 'Rec 709'.",
                      "Cannot convert from 'linear' to 'lin'."};
    EXPECT_EQ(log.lines(), lines);
}

} // namespace
