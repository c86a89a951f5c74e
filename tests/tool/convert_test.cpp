// convert and preview: the pixels they write are what the module computes,
// at the precision of the output; everything not converted is kept; no
// input is ever replaced and a failure writes nothing.

#include "tool_harness.h"

#include <verra_sdk/colorconfig.h>

#include <OpenImageIO/imagebufalgo.h>
#include <OpenImageIO/strutil.h>

#include <filesystem>
#include <set>

namespace verra_test {
namespace {

namespace sdk = orv::verra_sdk;
namespace verra = orv::verra;
namespace Strutil = OIIO::Strutil;
using ToolConvert = ToolTest;
constexpr int kSize = 16;

/// `in` (`channels` per pixel) as the module converts it into `outChannels`
/// per pixel: grey spread to RGB; 8-bit through its RGBA8 image transform,
/// float out of "linear" through its buffer transform, otherwise through
/// the shared configuration's processor; alpha kept, or 1 when `opaque`.
std::vector<float> moduleResult(std::vector<float> const& in, int channels, int outChannels, bool bytes,
                                char const* from, char const* to, bool opaque)
{
    std::size_t const count = in.size() / static_cast<std::size_t>(channels);
    sdk::Image const image = sdk::Image::create(kSize, kSize);
    verra::Vector2d<verra::float3, true> rgb;
    rgb.allocate(kSize, kSize);
    std::vector<float> alpha(count, 1.0f);
    for (std::size_t i = 0; i < count; ++i) {
        float const* p = &in[i * static_cast<std::size_t>(channels)];
        rgb.data[i] = channels < 3 ? verra::float3{p[0], p[0], p[0]} : verra::float3{p[0], p[1], p[2]};
        alpha[i] = channels % 2 == 0 && !opaque ? p[channels - 1] : 1.0f;
        auto const byte = [](float v) { return static_cast<std::uint8_t>(std::lround(v * 255.0f)); };
        image.rgba8()[i] = {byte(rgb.data[i].r), byte(rgb.data[i].g), byte(rgb.data[i].b), byte(alpha[i])};
    }
    if (bytes) {
        EXPECT_TRUE(sdk::ColorConfig::transform(image, from, to));
    } else if (std::string(from) == "linear") {
        EXPECT_TRUE(sdk::colorConfigTransformRgb(rgb, rgb, to));
    } else {
        sdk::colorConfig().createColorProcessor(from, to, "", "")->apply(&rgb.data[0].r, kSize, kSize, 3, 4, 12, 12 * kSize);
    }
    std::vector<float> out;
    for (std::size_t i = 0; i < count; ++i) {
        verra::Rgba8 const p = image.rgba8()[i];
        verra::float3 const c = bytes ? verra::float3{p.r / 255.0f, p.g / 255.0f, p.b / 255.0f} : rgb.data[i];
        out.insert(out.end(), {c.r, c.g, c.b, alpha[i]});
        out.resize(out.size() - (outChannels == 3 ? 1 : 0));
    }
    return out;
}

/// `values` as stored in `type` and read back.
std::vector<float> storedAs(std::vector<float> const& values, int channels, OIIO::TypeDesc type)
{
    OIIO::ImageBuf in(OIIO::ImageSpec(kSize, kSize, channels, OIIO::TypeDesc::FLOAT), const_cast<float*>(values.data()));
    OIIO::ImageBuf stored;
    OIIO::ImageBufAlgo::copy(stored, in, type);
    return floatsOf(stored);
}

TEST_F(ToolConvert, PixelsAreWhatTheModuleComputesAtTheOutputsPrecision)
{
    std::string const config = sampleConfig();
    struct Case {
        char const* in;
        char const* out;
        int channels;
        OIIO::TypeDesc type;
        char const* from;
        char const* to;
        bool moduleBytes;
        bool sample = false;
        char const* command = "convert";
    };
    Case const cases[] = {
        {"rgb.png", "rgb_out.png", 3, OIIO::TypeDesc::UINT8, "sRGB", "linear", true},
        {"rgba.png", "rgba_out.png", 4, OIIO::TypeDesc::UINT8, "linear", "sRGB", true},
        {"grey.png", "grey_out.png", 1, OIIO::TypeDesc::UINT8, "linear", "Rec709", true},
        {"greya.png", "greya_out.tga", 2, OIIO::TypeDesc::UINT8, "sRGB", "linear", true},
        {"tex.png", "tex_out.png", 3, OIIO::TypeDesc::UINT8, "srgb_tex", "lin", true, true},
        {"lin.exr", "lin_out.exr", 3, OIIO::TypeDesc::FLOAT, "linear", "sRGB", false},
        {"half.exr", "half_out.exr", 4, OIIO::TypeDesc::HALF, "linear", "Rec709", false},
        {"greyf.exr", "greyf_out.exr", 1, OIIO::TypeDesc::HALF, "linear", "sRGB", false},
        {"scan.tif", "scan_out.tif", 3, OIIO::TypeDesc::UINT16, "srgb_tex", "lin", false, true},
        // 8-bit written as float: computed in float, 256 distinct values.
        {"ramp.png", "ramp_out.exr", 3, OIIO::TypeDesc::UINT8, "sRGB", "linear", false},
        // A preview is opaque 8-bit RGBA (RGB in a format without alpha),
        // whatever its input; an sRGB input previewed as sRGB is unchanged.
        {"render.exr", "render.png", 2, OIIO::TypeDesc::HALF, "linear", "sRGB", false, false, "preview"},
        {"film.exr", "film.tga", 4, OIIO::TypeDesc::FLOAT, "lin", "srgb_tex", false, true, "preview"},
        {"tex8.png", "tex8.jpg", 4, OIIO::TypeDesc::UINT8, "sRGB", "sRGB", true, false, "preview"},
    };
    for (Case const& c : cases) {
        bool const bytes = c.type == OIIO::TypeDesc::UINT8;
        writeImage(file(c.in), kSize, kSize, c.channels, c.type, ramp(kSize, kSize, c.channels, bytes));
        std::vector<std::string> words{c.command, "--from", c.from, "--to", c.to, file(c.in), file(c.out)};
        if (c.sample) {
            words.insert(words.end(), {"--config", config});
        }
        Outcome const result = run(words);
        ASSERT_EQ(result.code, 0) << c.in << result.err;
        EXPECT_EQ(result.out, file(c.in) + " -> " + file(c.out) + "\n");
        bool const preview = std::string(c.command) == "preview";
        int const channels = Strutil::ends_with(c.out, ".jpg") ? 3 : preview ? 4 : c.channels < 3 ? c.channels + 2 : c.channels;
        OIIO::ImageBuf const out = readImage(file(c.out));
        OIIO::TypeDesc const type = out.nativespec().format;
        ASSERT_EQ(out.nchannels(), channels) << c.in;
        EXPECT_EQ(type, preview ? OIIO::TypeDesc::UINT8 : Strutil::ends_with(c.out, ".exr") && bytes ? OIIO::TypeDesc::HALF : c.type) << c.in;
        // PNG keeps the name of the space.
        EXPECT_TRUE(!Strutil::ends_with(c.out, ".png") || out.nativespec().get_string_attribute("oiio:ColorSpace") == c.to) << c.in;
        sdk::ColorConfig::loadOcioConfig(c.sample ? orv::String(config.c_str()) : orv::String());
        std::vector<float> const expected =
            moduleResult(floatsOf(readImage(file(c.in))), c.channels, channels, c.moduleBytes, c.from, c.to, preview);
        if (!Strutil::ends_with(c.out, ".jpg")) {
            EXPECT_EQ(storedAs(floatsOf(out), channels, type), storedAs(expected, channels, type)) << c.in;
        }
    }
    std::vector<float> const linear = floatsOf(readImage(file("ramp_out.exr")));
    EXPECT_EQ(std::set<float>(linear.begin(), linear.end()).size(), 256u);
}

TEST_F(ToolConvert, StructureMetadataExtraChannelsAndEverySubimageAreKept)
{
    OIIO::ImageSpec spec(24, 16, 6, OIIO::TypeDesc::HALF);
    spec.channelnames = {"R", "G", "B", "A", "Z", "N"};
    spec.alpha_channel = 3;
    spec.z_channel = 4;
    spec.x = 10;
    spec.y = -4;
    spec.full_width = 64;
    spec.full_height = 48;
    spec.attribute("PixelAspectRatio", 2.0f);
    spec.attribute("compression", "piz");
    spec.attribute("studio:shot", "sh010");
    OIIO::ImageBuf parts[2] = {OIIO::ImageBuf(spec), OIIO::ImageBuf(OIIO::ImageSpec(4, 4, 3, OIIO::TypeDesc::FLOAT))};
    OIIO::ImageBufAlgo::noise(parts[0], "uniform", 0.0f, 2.0f, false);
    OIIO::ImageBufAlgo::fill(parts[1], {2.0f, 0.1f, 0.0f});
    OIIO::ImageSpec specs[2] = {parts[0].spec(), parts[1].spec()};
    specs[0].tile_width = specs[0].tile_height = specs[1].tile_width = specs[1].tile_height = 16;
    // The parts of one file share its display window and pixel aspect.
    specs[1].full_width = 64;
    specs[1].full_height = 48;
    specs[1].attribute("PixelAspectRatio", 2.0f);
    auto writer = OIIO::ImageOutput::create(file("in.exr"));
    ASSERT_TRUE(writer && writer->open(file("in.exr"), 2, specs)) << (writer ? writer->geterror() : "");
    for (int i = 0; i < 2; ++i) {
        ASSERT_TRUE((i == 0 || writer->open(file("in.exr"), specs[i], OIIO::ImageOutput::AppendSubimage)) &&
                    writer->write_image(parts[i].spec().format, parts[i].localpixels()))
            << writer->geterror();
    }
    writer->close();
    ASSERT_EQ(run({"convert", "--from", "linear", "--to", "Rec709", file("in.exr"), file("out.exr")}).code, 0);
    auto const reader = OIIO::ImageInput::open(file("out.exr"));
    ASSERT_TRUE(reader);
    OIIO::ImageSpec const got = reader->spec();
    EXPECT_EQ(got.channelnames, spec.channelnames);
    EXPECT_EQ(got.format, OIIO::TypeDesc::HALF);
    EXPECT_EQ(got.roi(), spec.roi());
    EXPECT_EQ(got.roi_full(), spec.roi_full());
    EXPECT_EQ(got.tile_width, 16);
    EXPECT_EQ(got.get_float_attribute("PixelAspectRatio"), 2.0f);
    EXPECT_EQ(got.get_string_attribute("compression"), "piz");
    EXPECT_EQ(got.get_string_attribute("studio:shot"), "sh010");
    EXPECT_TRUE(reader->seek_subimage(1, 0));
    // Depth and N keep their bits.
    OIIO::ImageBuf const in = readImage(file("in.exr"));
    OIIO::ImageBuf const out = readImage(file("out.exr"));
    for (int c : {4, 5}) {
        OIIO::ImageBuf a, b;
        OIIO::ImageBufAlgo::channels(a, in, 1, {c});
        OIIO::ImageBufAlgo::channels(b, out, 1, {c});
        EXPECT_EQ(floatsOf(a), floatsOf(b)) << c;
    }
    EXPECT_NE(floatsOf(in), floatsOf(out));
    EXPECT_NE(floatsOf(readImage(file("out.exr"), 1)), floatsOf(readImage(file("in.exr"), 1)));
    // A format that holds one image refuses the file rather than drop a part.
    Outcome const png = run({"convert", "--from", "linear", "--to", "sRGB", file("in.exr"), file("out.png")});
    EXPECT_EQ(png.code, 1);
    EXPECT_EQ(png.err, "colorconfig: error: cannot write '" + file("out.png") +
                           "': a png file holds one image, and the input has 2 subimages; choose a format that holds them all (exr, tif)\n");
    EXPECT_FALSE(std::filesystem::exists(file("out.png")));
}

TEST_F(ToolConvert, FailuresWriteNothingAndNeverReplaceAnInput)
{
    for (char const* folder : {"a", "b", "out"}) {
        std::filesystem::create_directories(file(folder));
    }
    std::string const x = file("a/x.exr");
    writeImage(x, kSize, kSize, 3, OIIO::TypeDesc::HALF, ramp(kSize, kSize, 3, false));
    std::filesystem::copy_file(x, file("b/x.exr"));
    m_env.dir().write("bad.exr", "not an image");
    std::filesystem::create_symlink(x, file("link.exr"));
    std::string const before = readFile(x);
    std::string const replaces = "' would replace the input '" + x + "'; choose another output";
    using Words = std::vector<std::string>;
    Words const convert{"convert", "--from", "linear", "--to", "sRGB"};
    struct Case {
        Words words;
        std::string out;
        std::string err;
    };
    Case const cases[] = {
        {{x, file("link.exr")}, "", "'" + file("link.exr") + replaces},
        {{x, file("a/../a/x.exr")}, "", "'" + file("a/../a/x.exr") + replaces},
        {{"--out-dir", file("a"), x}, "", "'" + x + replaces},
        {{"--out-dir", file("out"), file("missing.exr"), x, file("b/x.exr")}, x + " -> " + file("out/x.exr") + "\n",
         "cannot read '" + file("missing.exr") + "': "},
        {{file("bad.exr"), file("bad_out.exr")}, "", "cannot read '" + file("bad.exr") + "': "},
        {{x, file("nowhere/y.exr")}, "", "cannot write '" + file("nowhere/y.exr") + "': "},
        {{"--out-dir", file("nowhere"), x}, "", "output folder '" + file("nowhere") + "' does not exist or is not a folder"},
        {{"convert", "--from", "linear", "--to", "bogus", x, file("never.exr")}, "", "unknown colour space 'bogus'"},
        {{"preview", x, x}, "", "'" + x + "' would replace its own input; choose another output\n"},
        {{"preview", x, file("p.exr")}, "",
         "cannot write '" + file("p.exr") + "': a preview is 8-bit, and openexr files do not hold 8-bit values\n"},
        {{"preview", "--from", "bogus", x, file("p.png")}, "", "unknown colour space 'bogus'"},
        {{"preview", file("missing.exr"), file("p.png")}, "", "cannot read '" + file("missing.exr") + "': "},
    };
    for (Case const& c : cases) {
        Words words = c.words;
        if (c.words[0] != "convert" && c.words[0] != "preview") {
            words.insert(words.begin(), convert.begin(), convert.end());
        }
        Outcome const result = run(words);
        EXPECT_EQ(result.code, 1) << result.err;
        EXPECT_EQ(result.out, c.out);
        EXPECT_TRUE(Strutil::starts_with(result.err, "colorconfig: error: " + c.err)) << result.err;
        EXPECT_EQ(readFile(x), before);
    }
    // Two inputs of one name: the second would overwrite the first's output.
    Outcome const twice = run({"convert", "--from", "linear", "--to", "sRGB", "--out-dir", file("out"), x, file("b/x.exr")});
    EXPECT_EQ(twice.err, "colorconfig: error: '" + file("out/x.exr") + "' was already written by an earlier input; '" +
                             file("b/x.exr") + "' is skipped\n");
    for (auto const& entry : std::filesystem::recursive_directory_iterator(m_env.dir().path())) {
        std::string const name = entry.path().filename().string();
        EXPECT_TRUE(!Strutil::ends_with(name, ".tmp") && name != "never.exr" && name != "p.png" && name != "p.exr") << name;
    }
}

} // namespace
} // namespace verra_test
