// The `preview` subcommand.

#include "color_names.h"
#include "commands.h"
#include "console.h"
#include "pixel_layout.h"
#include "raster.h"

#include <verra_sdk/colorconfig.h>

namespace colorconfig {

namespace {

namespace sdk = orv::verra_sdk;

/// The opaque RGBA8 `pixels` as a raster to be written.
Raster toRaster(orv::verra::Vector2d<orv::verra::Rgba8, true> const& pixels)
{
    Raster raster;
    raster.width = static_cast<int>(pixels.width);
    raster.height = static_cast<int>(pixels.height);
    raster.channels = 4;
    raster.fileType = OIIO::TypeDesc::UINT8;
    raster.unassociatedAlpha = true;
    raster.bytes.reserve(std::size_t{pixels.count} * 4);
    for (std::size_t i = 0; i < pixels.count; ++i) {
        orv::verra::Rgba8 const& pixel = pixels.data[i];
        raster.bytes.insert(raster.bytes.end(), {pixel.r, pixel.g, pixel.b, pixel.a});
    }
    return raster;
}

} // namespace

ExitCode runPreview(Context const& context)
{
    std::string const& input = context.args.positionals()[0];
    std::string const& output = context.args.positionals()[1];
    orv::String to;
    if (context.args.has("--to")) {
        to = resolveColorSpace(context.args.value("--to"));
        if (to.isEmpty()) {
            return ExitCode::Failure;
        }
    }
    Raster raster;
    std::string message;
    if (!readRaster(input, ReadAs::Floats, raster, message)) {
        console::error("cannot read '%s': %s", input.c_str(), message.c_str());
        return ExitCode::Failure;
    }
    orv::verra::Vector2d<orv::verra::float3, true> const source = toFloat3(raster);
    if (source.empty()) {
        console::error("not enough memory for '%s'", input.c_str());
        return ExitCode::Failure;
    }
    orv::verra::Vector2d<orv::verra::Rgba8, true> preview;
    // The module logs why a conversion fails.
    if (!sdk::colorConfigGenerateRgba8(source, preview, to)) {
        console::error("'%s' was not converted", input.c_str());
        return ExitCode::Failure;
    }
    if (!writeRaster(output, "png", toRaster(preview), message)) {
        console::error("cannot write '%s': %s", output.c_str(), message.c_str());
        return ExitCode::Failure;
    }
    console::out(input + " -> " + output);
    return ExitCode::Success;
}

} // namespace colorconfig
