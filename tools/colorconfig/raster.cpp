#include "raster.h"

#include <OpenImageIO/imageio.h>

#include <cstddef>

namespace colorconfig {

namespace {

/// The reading hint, and the ImageSpec attribute for writing, under which OpenImageIO keeps colour
/// channels unassociated with alpha instead of multiplying them.
constexpr char const* kUnassociatedAlpha = "oiio:UnassociatedAlpha";

std::size_t valueCount(int width, int height, int channels)
{
    return static_cast<std::size_t>(width) * static_cast<std::size_t>(height) * static_cast<std::size_t>(channels);
}

bool isEightBit(OIIO::ImageSpec const& spec)
{
    if (spec.format != OIIO::TypeDesc::UINT8) {
        return false;
    }
    for (OIIO::TypeDesc const& channelType : spec.channelformats) {
        if (channelType != OIIO::TypeDesc::UINT8) {
            return false;
        }
    }
    return true;
}

std::string orUnknown(std::string text) { return text.empty() ? std::string("unknown error") : text; }

} // namespace

bool readRaster(std::string const& path, ReadAs as, Raster& raster, std::string& error)
{
    OIIO::ImageSpec config;
    config.attribute(kUnassociatedAlpha, 1);
    auto input = OIIO::ImageInput::open(path, &config);
    if (!input) {
        error = orUnknown(OIIO::geterror());
        return false;
    }
    OIIO::ImageSpec const& spec = input->spec();
    if (spec.depth > 1) {
        error = "volume images are not supported";
        return false;
    }
    if (spec.width <= 0 || spec.height <= 0 || spec.nchannels <= 0) {
        error = "the image has no pixels";
        return false;
    }
    raster.width = spec.width;
    raster.height = spec.height;
    raster.channels = spec.nchannels;
    raster.fileType = spec.format;
    raster.unassociatedAlpha = spec.get_int_attribute(kUnassociatedAlpha, 0) != 0;
    raster.bytes.clear();
    raster.floats.clear();
    std::size_t const count = valueCount(spec.width, spec.height, spec.nchannels);
    bool ok = false;
    if (as == ReadAs::BytesOrFloats && isEightBit(spec)) {
        raster.bytes.resize(count);
        ok = input->read_image(0, 0, 0, spec.nchannels, OIIO::TypeDesc::UINT8, raster.bytes.data());
    } else {
        raster.floats.resize(count);
        ok = input->read_image(0, 0, 0, spec.nchannels, OIIO::TypeDesc::FLOAT, raster.floats.data());
    }
    if (!ok) {
        error = orUnknown(input->geterror());
        return false;
    }
    return true;
}

bool writeRaster(std::string const& path, std::string const& formatName, Raster const& raster, std::string& error)
{
    auto output = OIIO::ImageOutput::create(formatName.empty() ? path : formatName);
    if (!output) {
        error = orUnknown(OIIO::geterror());
        return false;
    }
    OIIO::ImageSpec spec(raster.width, raster.height, raster.channels, raster.fileType);
    if (raster.unassociatedAlpha) {
        spec.attribute(kUnassociatedAlpha, 1);
    }
    bool const asBytes = !raster.bytes.empty();
    void const* pixels = asBytes ? static_cast<void const*>(raster.bytes.data())
                                 : static_cast<void const*>(raster.floats.data());
    OIIO::TypeDesc const memoryType = asBytes ? OIIO::TypeDesc::UINT8 : OIIO::TypeDesc::FLOAT;
    if (!output->open(path, spec) || !output->write_image(memoryType, pixels) || !output->close()) {
        error = orUnknown(output->geterror());
        return false;
    }
    return true;
}

} // namespace colorconfig
