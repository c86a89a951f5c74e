#include <verra_sdk/kit/color_transform.h>

#include <verra_sdk/kit/names.h>
#include <verra_sdk/kit/processor_check.h>

#include <verra_sdk/colorconfig.h>

#include "current_config.h"
#include "processors.h"

#include <filesystem>

namespace orv::verra_sdk::kit {

namespace {

namespace OCIO = OCIO_NAMESPACE;

/// What failed when the processor of `transform` could not be built.
std::string failureOf(ColorTransform const& transform)
{
    if (!transform.lutFile.empty()) {
        return "cannot " + std::string(transform.invert ? "invert" : "read") + " the LUT file '" + transform.lutFile +
               "'";
    }
    return "cannot convert from '" + transform.from + "' to '" + transform.to + "'" +
           (transform.looks.empty() ? "" : " with the looks '" + transform.looks + "'");
}

} // namespace

bool parseContextVariable(std::string const& word, std::pair<std::string, std::string>& variable)
{
    std::size_t const equals = word.find('=');
    if (equals == std::string::npos || equals == 0) {
        return false;
    }
    variable = {word.substr(0, equals), word.substr(equals + 1)};
    return true;
}

bool chooseColorTransform(ColorTransform& transform, std::string& error)
{
    OCIO::ConstConfigRcPtr const config = detail::configOrRaw();
    if (!transform.lutFile.empty() && !(transform.from + transform.to + transform.looks).empty()) {
        error = "a LUT file is applied alone, without colour spaces or looks";
        return false;
    }
    if (transform.lutFile.empty()) {
        for (std::string* name : {&transform.from, &transform.to}) {
            std::string const typed = std::move(*name);
            *name = resolveColorSpace(typed).name;
            if (name->empty()) {
                error = unknownColorSpaceText(typed);
                return false;
            }
        }
        transform.result = transform.to;
        if (transform.plain()) {
            std::string const problem = conversionProblem(transform.from, transform.to);
            error = problem.empty() ? "" : failureOf(transform) + ": " + problem;
            return problem.empty();
        }
        if (!detail::currentOcio()) {
            error = "the built-in colour spaces have no looks or context variables; give a config with --config";
            return false;
        }
        std::string looks;
        if (!detail::configSpaceNamed(*config, transform.from, error) ||
            !detail::configSpaceNamed(*config, transform.to, error) ||
            !detail::chooseLooks(*config, transform.looks, looks, error)) {
            return false;
        }
        transform.looks = looks;
    } else {
        std::error_code ignored;
        std::filesystem::path const absolute = std::filesystem::absolute(transform.lutFile, ignored);
        transform.lutFile = absolute.empty() ? transform.lutFile : absolute.lexically_normal().string();
        transform.result.clear();
    }
    try {
        detail::colorTransformProcessor(config, transform);
    } catch (OCIO::Exception const& exception) {
        error = failureOf(transform) + ": " + detail::oneLine(exception.what());
        return false;
    }
    return true;
}

bool applyColorTransform(ColorTransform const& transform, OIIO::ImageBuf& pixels, std::string& error)
{
    OCIO::ConstProcessorRcPtr processor;
    try {
        processor = detail::colorTransformProcessor(detail::configOrRaw(), transform);
    } catch (OCIO::Exception const& exception) {
        error = failureOf(transform) + ": " + detail::oneLine(exception.what());
        return false;
    }
    return detail::applyProcessor(processor, pixels, "the transform", error);
}

bool convertColor(ColorTransform& transform, math::RgbaT<double>& color, ColorRoute& route, std::string& error)
{
    if (!chooseColorTransform(transform, error)) {
        return false;
    }
    // The module's transform returns a colour it cannot convert unchanged and
    // silently, so the route is asked first.
    bool const plain = transform.plain();
    route = plain ? colorRoute(String(transform.from), String(transform.to)) : ColorRoute::Processor;
    if (route == ColorRoute::None) {
        error = "cannot convert from '" + transform.from + "' to '" + transform.to + "' with this config";
        return false;
    }
    if (plain) {
        color = ColorConfig::transform(color, String(transform.from), String(transform.to));
        return true;
    }
    float rgb[3] = {static_cast<float>(color.r), static_cast<float>(color.g), static_cast<float>(color.b)};
    OIIO::ImageBuf pixel(OIIO::ImageSpec(1, 1, 3, OIIO::TypeDesc::FLOAT), rgb);
    if (!applyColorTransform(transform, pixel, error)) {
        return false;
    }
    color = {rgb[0], rgb[1], rgb[2], color.a};
    return true;
}

namespace detail {

OCIO::ConstProcessorRcPtr colorTransformProcessor(OCIO::ConstConfigRcPtr const& config, ColorTransform const& transform)
{
    OCIO::ConstContextRcPtr const context = contextWith(*config, transform.context);
    if (!transform.lutFile.empty()) {
        OCIO::FileTransformRcPtr const file = OCIO::FileTransform::Create();
        file->setSrc(transform.lutFile.c_str());
        return config->getProcessor(context, file,
                                    transform.invert ? OCIO::TRANSFORM_DIR_INVERSE : OCIO::TRANSFORM_DIR_FORWARD);
    }
    // With no looks this is the plain conversion between the two spaces.
    OCIO::LookTransformRcPtr const looks = OCIO::LookTransform::Create();
    looks->setSrc(transform.from.c_str());
    looks->setDst(transform.to.c_str());
    looks->setLooks(transform.looks.c_str());
    return config->getProcessor(context, looks, OCIO::TRANSFORM_DIR_FORWARD);
}

} // namespace detail

} // namespace orv::verra_sdk::kit
