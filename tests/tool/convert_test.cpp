// convert and preview: the pixels they write are what the module computes,
// at the precision of the output; everything not converted is kept; no
// input is ever replaced and a failure writes nothing.

#include "tool_test.h"

#include <filesystem>

namespace verra_test {
namespace {

using OIIO::TypeDesc;
using ToolConvert = ToolTest;
constexpr int kSize = 16;

/// The file at `path` as the module converts it, that is as colorconvert does
/// with the configuration's processor (as the module's own tests show), then
/// stored as `type`: grey spread to RGB, 8-bit pixels kept at 8 bits when
/// `bytes`; `channels` channels, alpha 1 when `opaque`.
std::vector<float> converted(std::string const& path, int channels, TypeDesc type, bool bytes,
                             char const* from, char const* to, bool opaque)
{
    OIIO::ImageBuf const in = readImage(path, 0, bytes ? TypeDesc::UINT8 : TypeDesc::FLOAT);
    int const n = in.nchannels();
    int const order[] = {0, n < 3 ? 0 : 1, n < 3 ? 0 : 2, n % 2 == 0 && !opaque ? n - 1 : -1};
    OIIO::ImageBuf rgb = OIIO::ImageBufAlgo::channels(in, channels, order, {0.0f, 0.0f, 0.0f, 1});
    auto const processor = orv::verra_sdk::colorConfig().createColorProcessor(from, to, "", "");
    EXPECT_TRUE(OIIO::ImageBufAlgo::colorconvert(rgb, rgb, processor.get(), false)) << from << to;
    OIIO::ImageBuf stored;
    OIIO::ImageBufAlgo::copy(stored, rgb, type);
    return floatsOf(stored);
}

TEST_F(ToolConvert, PixelsAreWhatTheModuleComputesAtTheOutputsPrecision)
{
    std::string const config = sampleConfig();
    struct Case {
        char const *in, *out;
        int channels;
        TypeDesc type;
        char const *from, *to;
        bool moduleBytes;
        bool sample = false;
        char const* command = "convert";
    } const cases[] = {
        {"rgb.png", "rgb_out.png", 3, TypeDesc::UINT8, "sRGB", "linear", true},
        {"greya.png", "greya_out.tga", 2, TypeDesc::UINT8, "sRGB", "linear", true},
        {"tex.png", "tex_out.png", 3, TypeDesc::UINT8, "srgb_tex", "lin", true, true},
        {"half.exr", "half_out.exr", 4, TypeDesc::HALF, "linear", "Rec709", false},
        {"greyf.exr", "greyf_out.exr", 1, TypeDesc::HALF, "linear", "sRGB", false},
        // 8-bit written as float: computed in float.
        {"ramp.png", "ramp_out.exr", 3, TypeDesc::UINT8, "sRGB", "linear", false},
        // A preview is opaque 8-bit RGBA (RGB in a format without alpha),
        // whatever its input; an sRGB input previewed as sRGB is unchanged.
        {"render.exr", "render.png", 2, TypeDesc::HALF, "linear", "sRGB", false, false, "preview"},
        {"film.exr", "film.tga", 4, TypeDesc::FLOAT, "lin", "srgb_tex", false, true, "preview"},
        {"tex8.png", "tex8.jpg", 4, TypeDesc::UINT8, "sRGB", "sRGB", true, false, "preview"},
    };
    for (Case const& c : cases) {
        writeNoise(file(c.in), kSize, c.channels, c.type);
        Words words{c.command, "--from", c.from, "--to", c.to, file(c.in), file(c.out)};
        if (c.sample) {
            words.insert(words.end(), {"--config", config});
        }
        EXPECT_EQ(run(words), (Outcome{0, file(c.in) + " -> " + file(c.out) + "\n", ""}));
        bool const preview = std::string(c.command) == "preview";
        bool const jpg = Strutil::ends_with(c.out, ".jpg");
        int const channels = jpg ? 3 : preview ? 4 : c.channels < 3 ? c.channels + 2 : c.channels;
        OIIO::ImageBuf const out = readImage(file(c.out));
        TypeDesc const type = out.nativespec().format;
        ASSERT_EQ(out.nchannels(), channels) << c.in;
        bool const toHalf = Strutil::ends_with(c.out, ".exr") && c.type == TypeDesc::UINT8;
        EXPECT_EQ(type, preview ? TypeDesc::UINT8 : toHalf ? TypeDesc::HALF : c.type) << c.in;
        // PNG keeps the name of the space.
        std::string const space = out.nativespec().get_string_attribute("oiio:ColorSpace");
        EXPECT_TRUE(!Strutil::ends_with(c.out, ".png") || space == c.to) << c.in;
        // The module holds the run's configuration still.
        std::vector<float> const want =
            converted(file(c.in), channels, type, c.moduleBytes, c.from, c.to, preview);
        EXPECT_TRUE(jpg || floatsOf(out) == want) << c.in;
    }
}

TEST_F(ToolConvert, StructureMetadataExtraChannelsAndEverySubimageAreKept)
{
    OIIO::ImageSpec spec(24, 16, 6, TypeDesc::HALF);
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
    OIIO::ImageBuf parts[] = {OIIO::ImageBuf(spec), OIIO::ImageBuf({4, 4, 3, TypeDesc::FLOAT})};
    OIIO::ImageBufAlgo::noise(parts[0], "uniform", 0.0f, 2.0f, false);
    OIIO::ImageBufAlgo::fill(parts[1], {2.0f, 0.1f, 0.0f});
    OIIO::ImageSpec specs[2] = {parts[0].spec(), parts[1].spec()};
    specs[0].tile_width = specs[0].tile_height = specs[1].tile_width = specs[1].tile_height = 16;
    // The parts of one file share its display window and pixel aspect.
    specs[1].full_width = 64;
    specs[1].full_height = 48;
    specs[1].attribute("PixelAspectRatio", 2.0f);
    std::string const input = file("in.exr");
    auto writer = OIIO::ImageOutput::create(input);
    ASSERT_TRUE(writer && writer->open(input, 2, specs)) << (writer ? writer->geterror() : "");
    for (int i = 0; i < 2; ++i) {
        ASSERT_TRUE((i == 0 || writer->open(input, specs[i], OIIO::ImageOutput::AppendSubimage)) &&
                    writer->write_image(parts[i].spec().format, parts[i].localpixels()))
            << writer->geterror();
    }
    writer->close();
    ASSERT_EQ(run({"convert", "--from", "linear", "--to", "Rec709", input, file("o.exr")}).code, 0);
    auto const reader = OIIO::ImageInput::open(file("o.exr"));
    ASSERT_TRUE(reader);
    OIIO::ImageSpec const got = reader->spec();
    EXPECT_TRUE(got.channelnames == spec.channelnames && got.format == TypeDesc::HALF &&
                got.roi() == spec.roi() && got.roi_full() == spec.roi_full() &&
                got.tile_width == 16 && got.get_float_attribute("PixelAspectRatio") == 2.0f &&
                got.get_string_attribute("compression") == "piz" &&
                got.get_string_attribute("studio:shot") == "sh010" && reader->seek_subimage(1, 0))
        << got.serialize(OIIO::ImageSpec::SerialText);
    // Depth and N keep their bits.
    OIIO::ImageBuf const in = readImage(input);
    OIIO::ImageBuf const out = readImage(file("o.exr"));
    auto const extra = [](OIIO::ImageBuf const& image) {
        return floatsOf(OIIO::ImageBufAlgo::channels(image, 2, {4, 5}));
    };
    EXPECT_EQ(extra(in), extra(out));
    EXPECT_NE(floatsOf(in), floatsOf(out));
    EXPECT_NE(floatsOf(readImage(file("o.exr"), 1)), floatsOf(readImage(input, 1)));
    // TIFF holds MIP levels as a texture's subimages: every level converted.
    using OIIO::ImageBufAlgo::MakeTxTexture;
    ASSERT_TRUE(OIIO::ImageBufAlgo::make_texture(MakeTxTexture, parts[1], file("tex.exr"), {}));
    ASSERT_EQ(run({"convert", "--from", "linear", "--to", "sRGB", file("tex.exr"), file("tex.tif")}).code, 0);
    OIIO::ImageBuf const last(file("tex.tif"), 0, 2), lastBefore(file("tex.exr"), 0, 2);
    EXPECT_TRUE(last.nmiplevels() == 3 && last.spec().width == 1 && floatsOf(last) != floatsOf(lastBefore));
    // A format that holds one image refuses the file rather than drop a part.
    std::string const png = file("out.png");
    EXPECT_EQ(run({"convert", "--from", "linear", "--to", "sRGB", input, png}),
              (Outcome{1, "",
                       "colorconfig: error: cannot write '" + png +
                           "': a png file holds one "
                           "image, and the input has 2 subimages; choose a format that holds "
                           "them all (exr, tif)\n"}));
    EXPECT_FALSE(std::filesystem::exists(png));
}

TEST_F(ToolConvert, FailuresWriteNothingAndNeverReplaceAnInput)
{
    for (char const* folder : {"a", "b", "out"}) {
        std::filesystem::create_directories(file(folder));
    }
    std::string const x = file("a/x.exr");
    writeNoise(x, kSize, 3, TypeDesc::HALF);
    std::filesystem::copy_file(x, file("b/x.exr"));
    m_env.dir().write("bad.exr", "not an image");
    std::filesystem::create_symlink(x, file("link.exr"));
    ::mkfifo(file("pipe.exr").c_str(), 0644);
    std::string const before = readFile(x);
    std::string const replaces = "' would replace the input '" + x + "'; choose another output";
    std::string const missing = file("missing.exr");
    Words const convert{"convert", "--from", "linear", "--to", "sRGB"};
    struct Case { Words words; std::string out, err; } const cases[] = {
        {{x, file("link.exr")}, "", "'" + file("link.exr") + replaces},
        {{x, file("a/../a/x.exr")}, "", "'" + file("a/../a/x.exr") + replaces},
        {{"--out-dir", file("a"), x}, "", "'" + x + replaces},
        {{"--out-dir", file("out"), missing, x, file("b/x.exr")},
         x + " -> " + file("out/x.exr") + "\n", "cannot read '" + missing + "': "},
        {{file("bad.exr"), file("bad_out.exr")}, "", "cannot read '" + file("bad.exr") + "': "},
        {{x, file("nowhere/y.exr")}, "", "cannot write '" + file("nowhere/y.exr") + "': "},
        {{x, file("pipe.exr")}, "", "cannot write '" + file("pipe.exr") + "': it is not a regular file\n"},
        {{"--out-dir", file("nowhere"), x}, "",
         "output folder '" + file("nowhere") + "' does not exist or is not a folder"},
        {{"preview", x, x}, "", "'" + x + "' would replace its own input; choose another output\n"},
        {{"preview", x, file("p.exr")}, "",
         "cannot write '" + file("p.exr") +
             "': a preview is 8-bit, and openexr files do not hold 8-bit values\n"},
        {{"preview", missing, file("p.png")}, "", "cannot read '" + missing + "': "},
    };
    for (Case const& c : cases) {
        Words words = c.words;
        if (c.words[0] != "convert" && c.words[0] != "preview") {
            words.insert(words.begin(), convert.begin(), convert.end());
        }
        Outcome const result = run(words);
        EXPECT_TRUE(result.code == 1 && result.out == c.out && readFile(x) == before &&
                    Strutil::starts_with(result.err, "colorconfig: error: " + c.err))
            << Strutil::join(c.words, " ") << ": " << result.code << result.out << result.err;
    }
    // Two inputs of one name: the second would overwrite the first's output.
    Outcome const twice = run({"convert", "--from", "linear", "--to", "sRGB", "--out-dir",
                               file("out"), x, file("b/x.exr")});
    EXPECT_EQ(twice, (Outcome{1, x + " -> " + file("out/x.exr") + "\n",
                              "colorconfig: error: '" + file("out/x.exr") +
                                  "' was already written by "
                                  "an earlier input; '" +
                                  file("b/x.exr") + "' is skipped\n"}));
    for (auto const& entry : std::filesystem::recursive_directory_iterator(m_env.dir().path())) {
        std::string const name = entry.path().filename().string();
        EXPECT_TRUE(!Strutil::ends_with(name, ".tmp") && name != "p.png" && name != "p.exr") << name;
    }
}

} // namespace
} // namespace verra_test
