#include "convert_raster.h"

#include "console.h"
#include "pixel_layout.h"

#include <verra_sdk/colorconfig.h>

#include <OpenImageIO/imagebuf.h>
#include <OpenImageIO/imagebufalgo.h>

namespace colorconfig {

namespace {

namespace sdk = orv::verra_sdk;

OIIO::string_view viewOf(orv::String const& text) { return OIIO::string_view(text.buf(), text.length()); }

bool outOfMemory()
{
    console::error("not enough memory for the image");
    return false;
}

bool convertBytes(Raster& raster, orv::String const& from, orv::String const& to)
{
    sdk::Image const image = toImage(raster);
    if (!image.isValid()) {
        return outOfMemory();
    }
    // The module logs why a conversion fails.
    if (!sdk::ColorConfig::transform(image, from, to)) {
        return false;
    }
    raster.channels = expandedChannels(raster.channels);
    raster.bytes = fromImage(image, raster.channels);
    return true;
}

bool convertOutOfLinear(Raster& raster, orv::String const& to)
{
    int const channels = expandedChannels(raster.channels);
    if (channels == 4) {
        orv::verra::Vector2d<orv::verra::float4, true> pixels = toFloat4(raster);
        if (pixels.empty()) {
            return outOfMemory();
        }
        if (!sdk::colorConfigTransformRgb(pixels, to)) {
            return false;
        }
        raster.floats = fromFloat4(pixels);
    } else {
        orv::verra::Vector2d<orv::verra::float3, true> const source = toFloat3(raster);
        orv::verra::Vector2d<orv::verra::float3, true> destination;
        destination.allocate(source.width, source.height);
        if (source.empty() || destination.empty()) {
            return outOfMemory();
        }
        if (!sdk::colorConfigTransformRgb(source, destination, to)) {
            return false;
        }
        raster.floats = fromFloat3(destination);
    }
    raster.channels = channels;
    return true;
}

bool convertWithProcessor(Raster& raster, orv::String const& from, orv::String const& to)
{
    OIIO::ColorProcessorHandle const processor =
        sdk::colorConfig().createColorProcessor(viewOf(from), viewOf(to), "", "");
    if (!processor) {
        console::error("cannot convert from '%s' to '%s' with this config", from.buf(), to.buf());
        return false;
    }
    std::vector<float> values = expandedFloats(raster);
    int const channels = expandedChannels(raster.channels);
    OIIO::ImageSpec const spec(raster.width, raster.height, channels, OIIO::TypeDesc::FLOAT);
    OIIO::ImageBuf buffer(spec, values.data(), OIIO::AutoStride, OIIO::AutoStride, OIIO::AutoStride);
    bool const ok = OIIO::ImageBufAlgo::colorconvert(buffer, buffer, processor.get(), false, OIIO::ROI::All(), 0);
    std::string const message = buffer.geterror(true);
    if (!ok) {
        console::error("conversion from '%s' to '%s' failed: %s", from.buf(), to.buf(),
                       message.empty() ? "unknown error" : message.c_str());
        return false;
    }
    raster.channels = channels;
    raster.floats = std::move(values);
    return true;
}

} // namespace

bool convertRaster(Raster& raster, orv::String const& from, orv::String const& to)
{
    if (!raster.bytes.empty()) {
        return convertBytes(raster, from, to);
    }
    if (from == "linear") {
        return convertOutOfLinear(raster, to);
    }
    return convertWithProcessor(raster, from, to);
}

} // namespace colorconfig
