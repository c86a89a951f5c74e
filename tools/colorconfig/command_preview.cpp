// The `preview` subcommand.

#include "borrowed_pixels.h"
#include "color_names.h"
#include "commands.h"
#include "console.h"
#include "convert_level.h"
#include "image_file.h"
#include "safe_output.h"

#include <verra_sdk/colorconfig.h>

#include <OpenImageIO/imagebufalgo.h>
#include <OpenImageIO/imageio.h>

#include <filesystem>

namespace colorconfig {

namespace {

namespace sdk = orv::verra_sdk;

/// The opaque RGBA8 preview of the FLOAT RGB pixels `rgb` in `from`,
/// converted into `to`: out of "linear" through `colorConfigGenerateRgba8`;
/// out of any other space through a processor, then OpenImageIO's own
/// quantisation to 8 bits, as the module's buffer transform quantises.
bool makePreview(OIIO::ImageBuf& rgb, orv::String const& from, orv::String const& to, OIIO::ImageBuf& preview,
                 std::string& error)
{
    OIIO::ImageSpec const& spec = rgb.spec();
    if (from == "linear") {
        preview.reset(OIIO::ImageSpec(spec.width, spec.height, 4, OIIO::TypeDesc::UINT8));
        BorrowedPixels<orv::verra::float3> source(rgb.localpixels(), spec.width, spec.height);
        BorrowedPixels<orv::verra::Rgba8> destination(preview.localpixels(), spec.width, spec.height);
        // The module logs why a conversion fails.
        if (!sdk::colorConfigGenerateRgba8(source.array(), destination.array(), to)) {
            error = "the conversion failed";
            return false;
        }
        return true;
    }
    if (!convertPackedFloats(rgb, from, to, error)) {
        return false;
    }
    OIIO::ImageBuf opaque;
    if (!OIIO::ImageBufAlgo::channels(opaque, rgb, 4, {0, 1, 2, -1}, {0.0f, 0.0f, 0.0f, 1.0f})) {
        error = opaque.geterror();
        return false;
    }
    preview.reset(OIIO::ImageSpec(spec.width, spec.height, 4, OIIO::TypeDesc::UINT8));
    return preview.copy_pixels(opaque);
}

} // namespace

ExitCode runPreview(Context const& context)
{
    std::string const& input = context.options.positionals[0];
    std::string const& output = context.options.positionals[1];
    std::error_code ignored;
    if (std::filesystem::equivalent(input, output, ignored)) {
        console::error("'{}' would replace its own input; choose another output", output);
        return ExitCode::Failure;
    }
    orv::String const from = resolveColorSpace(context.options.from, context.config.ocio);
    orv::String const to = resolveColorSpace(context.options.to, context.config.ocio);
    if (from.isEmpty() || to.isEmpty()) {
        return ExitCode::Failure;
    }
    std::string const format = formatForPath(output);
    if (!format.empty() && !formatStoresBytes(format)) {
        console::error("cannot write '{}': a preview is 8-bit, and {} files do not hold 8-bit values",
                       output, format);
        return ExitCode::Failure;
    }
    auto const writer = OIIO::ImageOutput::create(output);
    if (!writer) {
        console::error("cannot write '{}': {}", output, OIIO::geterror());
        return ExitCode::Failure;
    }
    ImageFile file;
    std::string message;
    if (!readImageFile(input, Precision::Float, file, message)) {
        console::error("cannot read '{}': {}", input, message);
        return ExitCode::Failure;
    }
    if (file.levels.size() > 1) {
        console::note("'{}' holds {} images; the preview shows the first", input, file.levels.size());
    }
    ImageLevel& level = file.levels.front();
    OIIO::ImageBuf rgb;
    OIIO::ImageBuf preview;
    if (!colorChannelsOf(level, rgb, message) || !makePreview(rgb, from, to, preview, message)) {
        console::error("'{}' was not converted: {}", input, message);
        return ExitCode::Failure;
    }
    ImageFile result;
    result.subimages = 1;
    result.levels.emplace_back();
    ImageLevel& out = result.levels.back();
    out.pixels = std::move(preview);
    if (!writer->supports("alpha")) {
        // Every alpha byte is 255: a format without alpha loses nothing.
        OIIO::ImageBuf rgbOnly;
        OIIO::ImageBufAlgo::channels(rgbOnly, out.pixels, 3, {0, 1, 2});
        out.pixels = std::move(rgbOnly);
    }
    out.fileSpec = out.pixels.spec();
    out.fileSpec.attribute("oiio:ColorSpace", std::string(to.view()));
    if (!writeImageFile(output, result, message)) {
        console::error("cannot write '{}': {}", output, message);
        return ExitCode::Failure;
    }
    console::out(input + " -> " + output);
    return ExitCode::Success;
}

} // namespace colorconfig
