#include <verra_sdk/kit/image_operations.h>

#include <verra_sdk/kit/color_channels.h>
#include <verra_sdk/kit/processor_check.h>

#include <OpenImageIO/imagebufalgo.h>
#include <OpenImageIO/imageio.h>

namespace orv::verra_sdk::kit {

namespace {

/// A batch's `from` that stands for each file's own colour space; the other
/// names are then checked from the scene-linear one.
constexpr char const* kAuto = "auto";
constexpr char const* kLinear = "linear";

} // namespace

ImageOperation conversionOperation(std::string const& from, std::string const& to)
{
    return [from = String(from), to = String(to)](ImageLevel& level, std::string& error) {
        return convertLevel(level, from, to, error);
    };
}

OperationMaker conversionMaker(std::string const& to)
{
    return [to](std::string const& from, std::string& error) {
        std::string const problem = conversionProblem(from, to);
        if (!problem.empty()) {
            error = "cannot convert from '" + from + "' to '" + to + "': " + problem;
            return ImageOperation();
        }
        return conversionOperation(from, to);
    };
}

OperationMaker colorTransformMaker(ColorTransform const& transform)
{
    return [transform](std::string const& from, std::string& error) {
        ColorTransform chosen = transform;
        chosen.from = from.empty() ? transform.from : from;
        return chooseColorTransform(chosen, error) ? colorTransformOperation(chosen) : ImageOperation();
    };
}

OperationMaker displayViewMaker(DisplayViewRequest const& request)
{
    return [request](std::string const& from, std::string& error) {
        DisplayViewRequest asked = request;
        asked.from = from;
        DisplayView chosen;
        return chooseDisplayView(asked, chosen, error) ? displayViewOperation(chosen) : ImageOperation();
    };
}

ImageOperation displayViewOperation(DisplayView const& transform)
{
    return [transform](ImageLevel& level, std::string& error) {
        auto const apply = [&transform](OIIO::ImageBuf& pixels, std::string& reason) {
            return applyDisplayView(transform, pixels, reason);
        };
        if (!transformColorChannels(level, apply, error)) {
            return false;
        }
        level.fileSpec.attribute("oiio:ColorSpace", transform.result);
        return true;
    };
}

ImageOperation colorTransformOperation(ColorTransform const& transform)
{
    if (transform.plain()) {
        return conversionOperation(transform.from, transform.to);
    }
    return [transform](ImageLevel& level, std::string& error) {
        auto const apply = [&transform](OIIO::ImageBuf& pixels, std::string& reason) {
            return applyColorTransform(transform, pixels, reason);
        };
        if (!transformColorChannels(level, apply, error)) {
            return false;
        }
        if (transform.result.empty()) {
            level.fileSpec.erase_attribute("oiio:ColorSpace");
        } else {
            level.fileSpec.attribute("oiio:ColorSpace", transform.result);
        }
        return true;
    };
}

ImageOperation previewOperation(std::string const& from, std::string const& to, bool alpha,
                                ContextVariables const& context)
{
    ColorTransform const transform{from, to, "", "", false, context};
    return [transform, alpha](ImageLevel& level, std::string& error) {
        OIIO::ImageBuf rgb;
        ColorTransform chosen = transform;
        bool const converted =
            colorChannelsOf(level, rgb, error) &&
            (transform.plain() ? convertPackedFloats(rgb, String(transform.from), String(transform.to), error)
                               : chooseColorTransform(chosen, error) && applyColorTransform(chosen, rgb, error));
        if (!converted) {
            return false;
        }
        OIIO::ImageBuf opaque;
        OIIO::ImageBuf bytes;
        if (!OIIO::ImageBufAlgo::channels(opaque, rgb, alpha ? 4 : 3, {0, 1, 2, -1}, {0.0f, 0.0f, 0.0f, 1.0f}) ||
            !OIIO::ImageBufAlgo::copy(bytes, opaque, OIIO::TypeDesc::UINT8)) {
            error = orUnknown(opaque.geterror() + bytes.geterror());
            return false;
        }
        level.pixels = std::move(bytes);
        level.fileSpec = level.pixels.spec();
        level.associatedAlpha = false;
        level.fileSpec.attribute("oiio:ColorSpace", transform.to);
        return true;
    };
}

OperationMaker previewMaker(std::string const& to, bool alpha, ContextVariables const& context)
{
    return [to, alpha, context](std::string const& from, std::string&) {
        return previewOperation(from, to, alpha, context);
    };
}

bool previewTarget(std::string const& output, bool& alpha, std::string& error)
{
    std::string const format = formatForPath(output);
    if (!format.empty() && !formatStoresBytes(format)) {
        error = "a preview is 8-bit, and " + format + " files do not hold 8-bit values";
        return false;
    }
    auto const writer = OIIO::ImageOutput::create(output);
    if (!writer) {
        error = orUnknown(OIIO::geterror());
        return false;
    }
    alpha = writer->supports("alpha") != 0;
    return true;
}

bool colorTransformBatch(ColorTransform transform, BatchRequest& request, std::string& error)
{
    bool const automatic = transform.from == kAuto;
    transform.from = automatic ? kLinear : transform.from;
    if (!chooseColorTransform(transform, error)) {
        return false;
    }
    request.from = automatic ? kAuto : transform.from;
    request.makeOperation = colorTransformMaker(transform);
    request.model.precision = transform.plain() ? Precision::KeepBytes : Precision::Float;
    return true;
}

bool displayViewBatch(DisplayViewRequest request, DisplayView& chosen, BatchRequest& batch, std::string& error)
{
    bool const automatic = request.from == kAuto;
    request.from = automatic ? kLinear : request.from;
    if (!chooseDisplayView(request, chosen, error)) {
        return false;
    }
    request.from = automatic ? kAuto : chosen.from;
    batch.from = request.from;
    batch.makeOperation = displayViewMaker(request);
    batch.model.precision = Precision::Float;
    return true;
}

bool previewBatch(std::string const& from, std::string const& to, std::string const& output,
                  ContextVariables const& context, BatchRequest& request, std::string& error)
{
    bool const automatic = from == kAuto;
    ColorTransform transform{automatic ? kLinear : from, to, "", "", false, context};
    bool alpha = false;
    if (!chooseColorTransform(transform, error)) {
        return false;
    }
    if (!previewTarget(output, alpha, error)) {
        error = "cannot write '" + output + "': " + error;
        return false;
    }
    request.from = automatic ? kAuto : transform.from;
    request.makeOperation = previewMaker(transform.to, alpha, context);
    request.model.precision = Precision::Float;
    request.model.firstImageOnly = true;
    return true;
}

} // namespace orv::verra_sdk::kit
