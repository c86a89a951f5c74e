// What the program does to files: outputs written beside their target and
// renamed into place, never over an input, never truncated by a write error
// or a kill; everything not converted kept; pixels at the output's precision.

#include "test_images.h"
#include "tool_test.h"

#include <verra_sdk/colorconfig.h>

#include <OpenImageIO/imagebuf.h>
#include <OpenImageIO/imagebufalgo.h>

#include <csignal>
#include <filesystem>
#include <fstream>
#include <set>
#include <sstream>

namespace verra_test {
namespace {

namespace sdk = orv::verra_sdk;
using ToolFileSafety = ToolTest;

std::string contentOf(std::string const& path)
{
    std::ifstream in(path, std::ios::binary);
    std::ostringstream text;
    text << in.rdbuf();
    return text.str();
}

/// The names in `folder`, sorted.
std::set<std::string> namesIn(std::string const& folder)
{
    std::set<std::string> names;
    for (auto const& entry : std::filesystem::directory_iterator(folder)) {
        names.insert(entry.path().filename().string());
    }
    return names;
}

/// A noisy float RGBA image of `size` × `size` pixels, slow to compress.
void writeNoise(std::string const& path, int size)
{
    OIIO::ImageBuf noise(OIIO::ImageSpec(size, size, 4, OIIO::TypeDesc::FLOAT));
    OIIO::ImageBufAlgo::noise(noise, "uniform", 0.0f, 1.0f, false);
    ASSERT_TRUE(noise.write(path)) << noise.geterror();
}

/// Channels [0, `channels`) of the float `pixels`, packed, converted by the
/// shared configuration's processor from `from` to `to`.
OIIO::ImageBuf colorconverted(OIIO::ImageBuf const& pixels, char const* from, char const* to, int channels)
{
    OIIO::ColorProcessorHandle const processor = sdk::colorConfig().createColorProcessor(from, to, "", "");
    EXPECT_TRUE(processor);
    OIIO::ImageBuf packed;
    std::vector<int> order(static_cast<std::size_t>(channels));
    for (int c = 0; c < channels; ++c) {
        order[static_cast<std::size_t>(c)] = c;
    }
    EXPECT_TRUE(OIIO::ImageBufAlgo::channels(packed, pixels, channels, order));
    OIIO::ImageSpec const& spec = packed.spec();
    auto const pixel = static_cast<OIIO::stride_t>(sizeof(float)) * channels;
    if (processor) {
        processor->apply(static_cast<float*>(packed.localpixels()), spec.width, spec.height, channels, sizeof(float),
                         pixel, pixel * spec.width);
    }
    return packed;
}

/// Subimage `subimage` of the file `path`, read whole as float (no cache).
OIIO::ImageBuf readFloats(std::string const& path, int subimage = 0)
{
    auto input = OIIO::ImageInput::open(path);
    EXPECT_TRUE(input && input->seek_subimage(subimage, 0)) << path;
    if (!input) {
        return {};
    }
    OIIO::ImageSpec spec = input->spec();
    spec.set_format(OIIO::TypeDesc::FLOAT);
    OIIO::ImageBuf pixels(spec);
    EXPECT_TRUE(input->read_image(subimage, 0, 0, spec.nchannels, OIIO::TypeDesc::FLOAT, pixels.localpixels()));
    return pixels;
}

/// The float values of channel `channel` of `pixels`.
std::vector<float> channelValues(OIIO::ImageBuf const& pixels, int channel)
{
    std::vector<float> values;
    OIIO::ROI const roi = pixels.roi();
    for (int y = roi.ybegin; y < roi.yend; ++y) {
        for (int x = roi.xbegin; x < roi.xend; ++x) {
            values.push_back(pixels.getchannel(x, y, 0, channel));
        }
    }
    return values;
}

TEST_F(ToolFileSafety, WriteErrorsLeaveTheOldOutputAndNoTemporaryFile)
{
    std::string const input = file("in.exr");
    writeNoise(input, 192);
    std::string const folder = m_dir.mkdir("out");
    for (char const* name : {"old.png", "old.exr", "old.tif", "old.jpg"}) {
        std::string const output = folder + "/" + name;
        ASSERT_EQ(run({"convert", "--from", "linear", "--to", "sRGB", input, output}).exitCode, 0) << name;
        std::string const before = contentOf(output);
        // A file-size limit of 4 kB: every format's write fails part-way.
        ToolResult const result = runScript("tool=$1; shift; ulimit -f 8; exec \"$tool\" \"$@\"",
                                            {"convert", "--from", "linear", "--to", "Rec709", input, output});
        EXPECT_EQ(result.exitCode, 1) << name << result.err;
        // libjpeg reports a write error itself and ends the program.
        if (std::string(name) != "old.jpg") {
            EXPECT_EQ(result.err.rfind("colorconfig: error: cannot write '" + output + "': ", 0), 0u) << result.err;
        }
        EXPECT_TRUE(contentOf(output) == before) << name;
    }
    EXPECT_EQ(namesIn(folder), (std::set<std::string>{"old.exr", "old.jpg", "old.png", "old.tif"}));
}

TEST_F(ToolFileSafety, AKilledConvertLeavesTheOldOutput)
{
    std::string const input = file("in.exr");
    writeNoise(input, 1024);
    std::string const output = file("out.exr");
    writeNoise(output, 8);
    std::string const before = contentOf(output);
    // Kill the program as soon as its temporary file appears, mid-write.
    std::string const script = "\"$1\" convert --from linear --to sRGB \"$2\" \"$3\" & pid=$!; "
                               "until ls \"$3\".*.tmp >/dev/null 2>&1; do :; done; kill -$4 $pid; wait $pid; "
                               "echo $?";
    for (char const* signal : {"KILL", "TERM"}) {
        ToolResult const result = runScript(script, {input, output, signal});
        int const expected = 128 + (std::string(signal) == "KILL" ? SIGKILL : SIGTERM);
        EXPECT_EQ(result.out, std::to_string(expected) + "\n") << signal << result.err;
        EXPECT_TRUE(contentOf(output) == before) << signal;
        // A killed program leaves its temporary file; a terminated one removes it.
        std::size_t temporaries = 0;
        for (std::string const& name : namesIn(m_dir.path())) {
            if (name.size() > 4 && name.compare(name.size() - 4, 4, ".tmp") == 0) {
                ++temporaries;
                std::filesystem::remove(m_dir.file(name));
            }
        }
        EXPECT_EQ(temporaries, std::string(signal) == "KILL" ? 1u : 0u) << signal;
    }
}

TEST_F(ToolFileSafety, PreviewWritesTheFormatItsNameAsksForAndNeverItsInput)
{
    std::string const input = file("render.exr");
    writeFloats(input, 16, 8, 3, OIIO::TypeDesc::HALF, floatRamp(16, 8, 3));
    std::string const before = contentOf(input);
    ToolResult const itself = run({"preview", input, input});
    EXPECT_EQ(itself.exitCode, 1);
    EXPECT_EQ(itself.err, "colorconfig: error: '" + input + "' would replace its own input; choose another output\n");
    EXPECT_TRUE(contentOf(input) == before);

    ToolResult const exr = run({"preview", input, file("p.exr")});
    EXPECT_EQ(exr.exitCode, 1);
    EXPECT_EQ(exr.err, "colorconfig: error: cannot write '" + file("p.exr") +
                           "': a preview is 8-bit, and openexr files do not hold 8-bit values\n");

    ASSERT_EQ(run({"preview", input, file("p.jpg")}).exitCode, 0);
    ImageFile const jpeg = readImageFile(file("p.jpg"));
    EXPECT_EQ(jpeg.format, "jpeg");
    EXPECT_EQ(jpeg.channels, 3);

    // --from: an sRGB input is previewed as sRGB without being encoded twice.
    std::string const srgb = file("tex.png");
    std::vector<std::uint8_t> const bytes = byteRamp(16, 8, 3);
    writeBytes(srgb, 16, 8, 3, bytes);
    ASSERT_EQ(run({"preview", "--from", "sRGB", srgb, file("p.png")}).exitCode, 0);
    ImageFile const same = readImageFile(file("p.png"));
    ASSERT_EQ(same.channels, 4);
    for (std::size_t i = 0; i < bytes.size() / 3; ++i) {
        EXPECT_EQ(same.bytes[i * 4], bytes[i * 3]) << i;
        EXPECT_EQ(same.bytes[i * 4 + 3], 255) << i;
    }
}

TEST_F(ToolFileSafety, EightBitInputsWrittenAsFloatAreComputedInFloat)
{
    std::string const input = file("ramp8.png");
    std::vector<std::uint8_t> ramp(256 * 3);
    for (std::size_t i = 0; i < ramp.size(); ++i) {
        ramp[i] = static_cast<std::uint8_t>(i / 3);
    }
    writeBytes(input, 256, 1, 3, ramp);
    ASSERT_EQ(run({"convert", "--from", "sRGB", "--to", "linear", input, file("ramp.exr")}).exitCode, 0);
    OIIO::ImageBuf const written = readFloats(file("ramp.exr"));
    std::vector<float> const red = channelValues(written, 0);
    EXPECT_EQ(std::set<float>(red.begin(), red.end()).size(), 256u);
    // Bit for bit what colorconvert gives on the float pixels, stored as half.
    OIIO::ImageBuf reference = colorconverted(readFloats(input), "sRGB", "linear", 3);
    OIIO::ImageBuf half;
    ASSERT_TRUE(OIIO::ImageBufAlgo::copy(half, reference, OIIO::TypeDesc::HALF));
    EXPECT_EQ(red, channelValues(half, 0));
}

TEST_F(ToolFileSafety, StructureMetadataAndExtraChannelsAreKept)
{
    std::string const input = file("six.exr");
    OIIO::ImageSpec spec(24, 16, 6, OIIO::TypeDesc::HALF);
    spec.channelnames = {"R", "G", "B", "A", "Z", "N"};
    spec.alpha_channel = 3;
    spec.z_channel = 4;
    spec.x = 10;
    spec.y = -4;
    spec.full_width = 64;
    spec.full_height = 48;
    spec.tile_width = spec.tile_height = 16;
    spec.attribute("PixelAspectRatio", 2.0f);
    spec.attribute("compression", "piz");
    spec.attribute("studio:shot", "sh010");
    OIIO::ImageBuf six(spec);
    OIIO::ImageBufAlgo::noise(six, "uniform", 0.0f, 2.0f, false);
    six.set_write_tiles(16, 16);
    ASSERT_TRUE(six.write(input));
    ToolResult const result = run({"convert", "--from", "linear", "--to", "Rec709", input, file("out.exr")});
    ASSERT_EQ(result.exitCode, 0) << result.err;

    OIIO::ImageBuf const out = readFloats(file("out.exr"));
    std::unique_ptr<OIIO::ImageInput> const header = OIIO::ImageInput::open(file("out.exr"));
    ASSERT_TRUE(header);
    OIIO::ImageSpec const& got = header->spec();
    EXPECT_EQ(got.channelnames, spec.channelnames);
    EXPECT_EQ(got.format, OIIO::TypeDesc::HALF);
    EXPECT_EQ(got.roi(), spec.roi());
    EXPECT_EQ(got.roi_full(), spec.roi_full());
    EXPECT_EQ(got.tile_width, 16);
    EXPECT_EQ(got.get_float_attribute("PixelAspectRatio"), 2.0f);
    EXPECT_EQ(got.get_string_attribute("compression"), "piz");
    EXPECT_EQ(got.get_string_attribute("studio:shot"), "sh010");
    OIIO::ImageBuf const original = readFloats(input);
    // Depth and the other extra channel keep their bits; RGBA is what
    // colorconvert gives on those four channels alone, rounded to half.
    for (int c : {4, 5}) {
        EXPECT_EQ(channelValues(out, c), channelValues(original, c)) << c;
    }
    OIIO::ImageBuf half;
    ASSERT_TRUE(OIIO::ImageBufAlgo::copy(half, colorconverted(original, "linear", "Rec709", 4), OIIO::TypeDesc::HALF));
    for (int c = 0; c < 4; ++c) {
        EXPECT_EQ(channelValues(out, c), channelValues(half, c)) << c;
    }
}

TEST_F(ToolFileSafety, EverySubimageIsConvertedOrTheFileRefused)
{
    std::string const input = file("parts.exr");
    OIIO::ImageBuf first(OIIO::ImageSpec(8, 8, 3, OIIO::TypeDesc::FLOAT));
    OIIO::ImageBuf second(OIIO::ImageSpec(4, 4, 3, OIIO::TypeDesc::FLOAT));
    OIIO::ImageBufAlgo::fill(first, {0.25f, 0.5f, 1.0f});
    OIIO::ImageBufAlgo::fill(second, {2.0f, 0.1f, 0.0f});
    std::unique_ptr<OIIO::ImageOutput> writer = OIIO::ImageOutput::create(input);
    OIIO::ImageSpec specs[2] = {first.spec(), second.spec()};
    specs[1].full_width = specs[1].full_height = 8;
    specs[0].attribute("name", "beauty");
    specs[1].attribute("name", "thumb");
    ASSERT_TRUE(writer->open(input, 2, specs)) << writer->geterror();
    ASSERT_TRUE(first.write(writer.get()));
    ASSERT_TRUE(writer->open(input, specs[1], OIIO::ImageOutput::AppendSubimage));
    ASSERT_TRUE(second.write(writer.get()));
    writer->close();

    ToolResult const png = run({"convert", "--from", "linear", "--to", "sRGB", input, file("out.png")});
    EXPECT_EQ(png.exitCode, 1);
    EXPECT_EQ(png.err, "colorconfig: error: cannot write '" + file("out.png") +
                           "': a png file holds one image, and the input has 2 subimages; choose a format that "
                           "holds them all (exr, tif)\n");
    EXPECT_FALSE(std::filesystem::exists(file("out.png")));

    ASSERT_EQ(run({"convert", "--from", "linear", "--to", "sRGB", input, file("out.exr")}).exitCode, 0);
    for (int subimage = 0; subimage < 2; ++subimage) {
        OIIO::ImageBuf const got = readFloats(file("out.exr"), subimage);
        OIIO::ImageBuf const reference = colorconverted(readFloats(input, subimage), "linear", "sRGB", 3);
        EXPECT_EQ(channelValues(got, 0), channelValues(reference, 0)) << subimage;
        EXPECT_EQ(got.spec().width, subimage == 0 ? 8 : 4);
    }
}

TEST_F(ToolFileSafety, ALinearPngSaysSo)
{
    std::string const input = file("tex.png");
    writeBytes(input, 4, 4, 3, byteRamp(4, 4, 3));
    ASSERT_EQ(run({"convert", "--from", "sRGB", "--to", "linear", input, file("lin.png")}).exitCode, 0);
    std::unique_ptr<OIIO::ImageInput> const out = OIIO::ImageInput::open(file("lin.png"));
    ASSERT_TRUE(out);
    EXPECT_EQ(out->spec().get_float_attribute("oiio:Gamma"), 1.0f);
    EXPECT_EQ(out->spec().get_string_attribute("oiio:ColorSpace"), "linear");
}

} // namespace
} // namespace verra_test
