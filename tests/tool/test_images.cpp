#include "test_images.h"

#include <OpenImageIO/imageio.h>

#include <gtest/gtest.h>

namespace verra_test {

namespace {

constexpr char const* kUnassociatedAlpha = "oiio:UnassociatedAlpha";

void write(std::string const& path, OIIO::ImageSpec spec, OIIO::TypeDesc memoryType, void const* pixels)
{
    auto output = OIIO::ImageOutput::create(path);
    ASSERT_TRUE(output) << "no writer for " << path << ": " << OIIO::geterror();
    spec.attribute(kUnassociatedAlpha, 1);
    ASSERT_TRUE(output->open(path, spec)) << output->geterror();
    ASSERT_TRUE(output->write_image(memoryType, pixels)) << output->geterror();
    ASSERT_TRUE(output->close()) << output->geterror();
}

} // namespace

void writeBytes(std::string const& path, int width, int height, int channels,
                std::vector<std::uint8_t> const& bytes)
{
    ASSERT_EQ(bytes.size(), static_cast<std::size_t>(width * height * channels));
    write(path, OIIO::ImageSpec(width, height, channels, OIIO::TypeDesc::UINT8), OIIO::TypeDesc::UINT8,
          bytes.data());
}

void writeFloats(std::string const& path, int width, int height, int channels, OIIO::TypeDesc type,
                 std::vector<float> const& floats)
{
    ASSERT_EQ(floats.size(), static_cast<std::size_t>(width * height * channels));
    write(path, OIIO::ImageSpec(width, height, channels, type), OIIO::TypeDesc::FLOAT, floats.data());
}

ImageFile readImageFile(std::string const& path)
{
    ImageFile image;
    OIIO::ImageSpec config;
    config.attribute(kUnassociatedAlpha, 1);
    auto input = OIIO::ImageInput::open(path, &config);
    if (!input) {
        ADD_FAILURE() << "cannot open " << path << ": " << OIIO::geterror();
        return image;
    }
    OIIO::ImageSpec const& spec = input->spec();
    std::size_t const count = static_cast<std::size_t>(spec.width) * static_cast<std::size_t>(spec.height) *
                              static_cast<std::size_t>(spec.nchannels);
    image.width = spec.width;
    image.height = spec.height;
    image.channels = spec.nchannels;
    image.type = spec.format;
    image.format = input->format_name();
    image.floats.resize(count);
    bool ok = input->read_image(0, 0, 0, spec.nchannels, OIIO::TypeDesc::FLOAT, image.floats.data());
    if (ok && spec.format == OIIO::TypeDesc::UINT8) {
        image.bytes.resize(count);
        ok = input->read_image(0, 0, 0, spec.nchannels, OIIO::TypeDesc::UINT8, image.bytes.data());
    }
    if (!ok) {
        ADD_FAILURE() << "cannot read " << path << ": " << input->geterror();
        return ImageFile();
    }
    return image;
}

std::vector<std::uint8_t> byteRamp(int width, int height, int channels)
{
    std::vector<std::uint8_t> bytes;
    int const count = width * height * channels;
    for (int i = 0; i < count; ++i) {
        int const channel = i % channels;
        int const pixel = i / channels;
        bytes.push_back(static_cast<std::uint8_t>((pixel * (7 + 4 * channel) + 31 * channel) % 256));
    }
    return bytes;
}

std::vector<float> floatRamp(int width, int height, int channels)
{
    std::vector<float> floats;
    int const pixels = width * height;
    for (int i = 0; i < pixels * channels; ++i) {
        int const channel = i % channels;
        float const t = static_cast<float>(i / channels) / static_cast<float>(pixels > 1 ? pixels - 1 : 1);
        bool const alpha = channel == 3;
        floats.push_back(alpha ? 1.0f - 0.75f * t : -0.25f + 2.25f * t * (1.0f - 0.1f * static_cast<float>(channel)));
    }
    return floats;
}

} // namespace verra_test
