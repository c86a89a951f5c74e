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

/// The colour channels of `in` (grey spread to RGB; `channels` per pixel)
/// converted by the module: 8-bit through its RGBA8 image transform, float
/// out of "linear" through its buffer transform, otherwise through the
/// shared configuration's processor. Alpha, when there is one, stays.
std::vector<float> moduleResult(std::vector<float> const& in, int channels, bool bytes, char const* from, char const* to)
{
    int const out = channels < 3 ? channels + 2 : channels;
    std::vector<float> result(in.size() / static_cast<std::size_t>(channels) * static_cast<std::size_t>(out));
    auto const at = [&](std::size_t pixel, int c) { return in[pixel * channels + (channels < 3 && c < 3 ? 0 : c - (channels < 3 ? 2 : 0))]; };
    std::size_t const count = in.size() / static_cast<std::size_t>(channels);
    sdk::Image const image = sdk::Image::create(kSize, kSize);
    verra::Vector2d<verra::float3, true> rgb;
    rgb.allocate(kSize, kSize);
    for (std::size_t i = 0; i < count; ++i) {
        auto const byte = [&](int c) { return static_cast<std::uint8_t>(std::lround(at(i, c) * 255.0f)); };
        image.rgba8()[i] = {byte(0), byte(1), byte(2), out == 4 ? byte(3) : std::uint8_t(255)};
        rgb.data[i] = {at(i, 0), at(i, 1), at(i, 2)};
    }
    if (bytes) {
        EXPECT_TRUE(sdk::ColorConfig::transform(image, from, to));
    } else if (std::string(from) == "linear") {
        EXPECT_TRUE(sdk::colorConfigTransformRgb(rgb, rgb, to));
    } else {
        OIIO::ColorProcessorHandle const processor = sdk::colorConfig().createColorProcessor(from, to, "", "");
        EXPECT_TRUE(processor);
        processor->apply(&rgb.data[0].r, kSize, kSize, 3, sizeof(float), 3 * sizeof(float), kSize * 3 * sizeof(float));
    }
    for (std::size_t i = 0; i < count; ++i) {
        verra::Rgba8 const p = image.rgba8()[i];
        float const converted[3] = {bytes ? p.r / 255.0f : rgb.data[i].r, bytes ? p.g / 255.0f : rgb.data[i].g,
                                    bytes ? p.b / 255.0f : rgb.data[i].b};
        for (int c = 0; c < out; ++c) {
            result[i * out + c] = c < 3 ? converted[c] : at(i, c);
        }
    }
    return result;
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
    };
    for (Case const& c : cases) {
        bool const bytes = c.type == OIIO::TypeDesc::UINT8;
        std::vector<float> const in = ramp(kSize, kSize, c.channels, bytes);
        writeImage(file(c.in), kSize, kSize, c.channels, c.type, in);
        std::vector<float> const read = floatsOf(readImage(file(c.in)));
        std::vector<std::string> words{"convert", "--from", c.from, "--to", c.to, file(c.in), file(c.out)};
        if (c.sample) {
            words.insert(words.end(), {"--config", config});
        }
        Outcome const result = run(words);
        ASSERT_EQ(result.code, 0) << c.in << result.err;
        EXPECT_EQ(result.out, file(c.in) + " -> " + file(c.out) + "\n");
        OIIO::ImageBuf const out = readImage(file(c.out));
        sdk::ColorConfig::loadOcioConfig(c.sample ? orv::String(config.c_str()) : orv::String());
        std::vector<float> const expected = moduleResult(read, c.channels, c.moduleBytes, c.from, c.to);
        int const channels = c.channels < 3 ? c.channels + 2 : c.channels;
        ASSERT_EQ(out.nchannels(), channels) << c.in;
        OIIO::TypeDesc const type = out.nativespec().format;
        EXPECT_EQ(type, Strutil::ends_with(c.out, ".exr") && bytes ? OIIO::TypeDesc::HALF : c.type) << c.in;
        if (Strutil::ends_with(c.out, ".png")) {
            // PNG keeps the name of the space.
            EXPECT_EQ(std::string(out.nativespec().get_string_attribute("oiio:ColorSpace")),
                      std::string(sdk::ColorConfig::findColorSpace(c.to).view()))
                << c.in;
        }
        EXPECT_EQ(storedAs(floatsOf(out), channels, type), storedAs(expected, channels, type)) << c.in;
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
    std::filesystem::create_directories(file("a"));
    std::filesystem::create_directories(file("b"));
    std::filesystem::create_directories(file("out"));
    writeImage(file("a/x.exr"), kSize, kSize, 3, OIIO::TypeDesc::HALF, ramp(kSize, kSize, 3, false));
    writeImage(file("b/x.exr"), kSize, kSize, 3, OIIO::TypeDesc::HALF, ramp(kSize, kSize, 3, false));
    m_env.dir().write("bad.exr", "not an image");
    std::filesystem::create_symlink(file("a/x.exr"), file("link.exr"));
    std::vector<std::string> const convert{"convert", "--from", "linear", "--to", "sRGB"};
    auto const with = [&](std::vector<std::string> words) {
        words.insert(words.begin(), convert.begin(), convert.end());
        return run(words);
    };
    std::string const before = readFile(file("a/x.exr"));
    struct Case {
        std::vector<std::string> words;
        std::string out;
        std::string err;
    };
    Case const cases[] = {
        {{file("a/x.exr"), file("link.exr")}, "",
         "'" + file("link.exr") + "' would replace the input '" + file("a/x.exr") + "'; choose another output"},
        {{file("a/x.exr"), file("a/../a/x.exr")}, "",
         "'" + file("a/../a/x.exr") + "' would replace the input '" + file("a/x.exr") + "'; choose another output"},
        {{"--out-dir", file("a"), file("a/x.exr")}, "",
         "'" + file("a/x.exr") + "' would replace the input '" + file("a/x.exr") + "'; choose another output"},
        {{"--out-dir", file("out"), file("missing.exr"), file("a/x.exr"), file("b/x.exr")},
         file("a/x.exr") + " -> " + file("out/x.exr") + "\n",
         "cannot read '" + file("missing.exr")},
        {{file("bad.exr"), file("bad_out.exr")}, "", "cannot read '" + file("bad.exr") + "': "},
        {{file("a/x.exr"), file("nowhere/y.exr")}, "", "cannot write '" + file("nowhere/y.exr") + "': "},
        {{"--out-dir", file("nowhere"), file("a/x.exr")}, "",
         "output folder '" + file("nowhere") + "' does not exist or is not a folder"},
        {{"--to", "bogus", file("a/x.exr"), file("never.exr")}, "", "unknown colour space 'bogus'"},
    };
    for (Case const& c : cases) {
        std::vector<std::string> words = convert;
        words.insert(words.end(), c.words.begin(), c.words.end());
        if (c.words[0] == "--to") {
            words.erase(words.begin() + 3, words.begin() + 5);
        }
        Outcome const result = run(words);
        EXPECT_EQ(result.code, 1) << result.err;
        EXPECT_EQ(result.out, c.out);
        EXPECT_TRUE(Strutil::starts_with(result.err, "colorconfig: error: " + c.err)) << result.err;
        EXPECT_EQ(readFile(file("a/x.exr")), before);
    }
    // The second x.exr would have overwritten the first one's output.
    EXPECT_TRUE(Strutil::contains(with({"--out-dir", file("out"), file("a/x.exr"), file("b/x.exr")}).err,
                                  "'" + file("out/x.exr") + "' was already written by an earlier input; '" +
                                      file("b/x.exr") + "' is skipped"));
    EXPECT_FALSE(std::filesystem::exists(file("never.exr")));
    std::set<std::string> names;
    for (auto const& entry : std::filesystem::directory_iterator(m_env.dir().path())) {
        names.insert(entry.path().filename().string());
    }
    for (std::string const& name : names) {
        EXPECT_FALSE(Strutil::ends_with(name, ".tmp")) << name;
    }
}

TEST_F(ToolConvert, PreviewIsAnOpaqueEightBitImageInTheFormatOfItsName)
{
    std::vector<float> const grey = ramp(kSize, kSize, 2, false);
    writeImage(file("grey.exr"), kSize, kSize, 2, OIIO::TypeDesc::HALF, grey);
    std::vector<float> const read = floatsOf(readImage(file("grey.exr")));
    for (char const* to : {"sRGB", "Rec709"}) {
        ASSERT_EQ(run({"preview", "--to", to, file("grey.exr"), file("p.png")}).code, 0);
        OIIO::ImageBuf const preview = readImage(file("p.png"));
        EXPECT_EQ(preview.nativespec().format, OIIO::TypeDesc::UINT8);
        ASSERT_EQ(preview.nchannels(), 4);
        verra::Vector2d<verra::float3, true> source;
        source.allocate(kSize, kSize);
        for (std::uint32_t i = 0; i < source.count; ++i) {
            source.data[i] = {read[2 * i], read[2 * i], read[2 * i]};
        }
        verra::Vector2d<verra::Rgba8, true> expected;
        expected.allocate(kSize, kSize);
        ASSERT_TRUE(sdk::colorConfigGenerateRgba8(source, expected, to));
        std::vector<float> const got = floatsOf(preview);
        for (std::uint32_t i = 0; i < source.count; ++i) {
            verra::Rgba8 const p = expected.data[i];
            EXPECT_EQ(std::lround(got[4 * i] * 255.0f), p.r) << i;
            EXPECT_EQ(std::lround(got[4 * i + 1] * 255.0f), p.g) << i;
            EXPECT_EQ(got[4 * i + 3], 1.0f) << i;
        }
    }
    // --from: an sRGB texture previewed as sRGB comes back as it was.
    std::vector<float> const bytes = ramp(kSize, kSize, 3, true);
    writeImage(file("tex.png"), kSize, kSize, 3, OIIO::TypeDesc::UINT8, bytes);
    ASSERT_EQ(run({"preview", "--from", "sRGB", file("tex.png"), file("tex.jpg")}).code, 0);
    EXPECT_EQ(readImage(file("tex.jpg")).nchannels(), 3);
    ASSERT_EQ(run({"preview", "--from", "sRGB", file("tex.png"), file("tex.tga")}).code, 0);
    std::vector<float> const same = floatsOf(readImage(file("tex.tga")));
    for (std::size_t i = 0; i < bytes.size() / 3; ++i) {
        EXPECT_EQ(std::lround(same[4 * i + 2] * 255.0f), std::lround(bytes[3 * i + 2] * 255.0f)) << i;
    }
    std::string const before = readFile(file("grey.exr"));
    Outcome const itself = run({"preview", file("grey.exr"), file("grey.exr")});
    EXPECT_EQ(itself.code, 1);
    EXPECT_EQ(itself.err, "colorconfig: error: '" + file("grey.exr") + "' would replace its own input; choose another output\n");
    Outcome const exr = run({"preview", file("grey.exr"), file("p.exr")});
    EXPECT_EQ(exr.code, 1);
    EXPECT_EQ(exr.err, "colorconfig: error: cannot write '" + file("p.exr") +
                           "': a preview is 8-bit, and openexr files do not hold 8-bit values\n");
    EXPECT_EQ(readFile(file("grey.exr")), before);
    EXPECT_EQ(run({"preview", "--from", "bogus", file("grey.exr"), file("q.png")}).code, 1);
    EXPECT_EQ(run({"preview", file("missing.exr"), file("q.png")}).code, 1);
    EXPECT_FALSE(std::filesystem::exists(file("q.png")));
}

} // namespace
} // namespace verra_test
