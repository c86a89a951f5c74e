#include <verra_sdk/kit/display_view.h>

#include "current_config.h"

#include <OpenImageIO/parallel.h>
#include <OpenImageIO/strutil.h>

#include <cstdint>
#include <mutex>
#include <vector>

namespace orv::verra_sdk::kit {

namespace {

namespace OCIO = OCIO_NAMESPACE;
namespace Strutil = OIIO::Strutil;

/// `names` quoted and joined with ", ".
std::string quoted(std::vector<std::string> const& names)
{
    std::string text;
    for (std::string const& name : names) {
        text += (text.empty() ? "'" : ", '") + name + "'";
    }
    return text;
}

/// The entry of `names` equal to `wanted`, else the one equal apart from
/// case; empty when there is none.
std::string matching(std::string const& wanted, std::vector<std::string> const& names)
{
    for (std::string const& name : names) {
        if (name == wanted) {
            return name;
        }
    }
    for (std::string const& name : names) {
        if (Strutil::iequals(name, wanted)) {
            return name;
        }
    }
    return {};
}

std::vector<std::string> displaysOf(OCIO::Config const& config)
{
    std::vector<std::string> names;
    for (int i = 0; i < config.getNumDisplaysAll(); ++i) {
        names.emplace_back(config.getDisplayAll(i));
    }
    return names;
}

/// Every view of `display`, active or not: its own views, then the shared
/// views it uses.
std::vector<std::string> viewsOf(OCIO::Config const& config, std::string const& display)
{
    std::vector<std::string> names;
    for (OCIO::ViewType const type : {OCIO::VIEW_DISPLAY_DEFINED, OCIO::VIEW_SHARED}) {
        for (int i = 0; i < config.getNumViews(type, display.c_str()); ++i) {
            names.emplace_back(config.getView(type, display.c_str(), i));
        }
    }
    return names;
}

std::vector<std::string> looksOf(OCIO::Config const& config)
{
    std::vector<std::string> names;
    for (int i = 0; i < config.getNumLooks(); ++i) {
        names.emplace_back(config.getLookNameByIndex(i));
    }
    return names;
}

/// The looks of `request` in the config's spelling, each with the + or -
/// it was given; false with a message for an unknown one.
bool chooseLooks(OCIO::Config const& config, std::string const& request, std::string& looks, std::string& error)
{
    std::vector<std::string> const known = looksOf(config);
    for (std::string_view item : Strutil::splitsv(request, ",")) {
        item = Strutil::strip(item);
        std::string const sign = Strutil::starts_with(item, "+") || Strutil::starts_with(item, "-")
                                     ? std::string(item.substr(0, 1))
                                     : std::string();
        std::string const name = matching(std::string(Strutil::strip(item.substr(sign.size()))), known);
        if (name.empty()) {
            error = known.empty() ? "unknown look '" + std::string(item) + "': this config has no looks"
                                  : "unknown look '" + std::string(item) + "'; the config's looks: " + quoted(known);
            return false;
        }
        looks += (looks.empty() ? "" : ", ") + sign + name;
    }
    return true;
}

/// The config's name of the colour space `from`; the built-in "linear",
/// which the config may not have, stands for its scene_linear role.
std::string spaceOf(OCIO::Config const& config, std::string const& from)
{
    OCIO::ConstColorSpaceRcPtr space = config.getColorSpace(from.c_str());
    if (!space && from == "linear") {
        space = config.getColorSpace(OCIO::ROLE_SCENE_LINEAR);
    }
    return space ? space->getName() : std::string();
}

/// The processor of `transform` with its looks in place of the view's own
/// ones (the view's looks when it has none). Throws OpenColorIO's exception.
OCIO::ConstProcessorRcPtr processorOf(OCIO::ConstConfigRcPtr const& config, DisplayView const& transform)
{
    OCIO::DisplayViewTransformRcPtr const displayView = OCIO::DisplayViewTransform::Create();
    displayView->setSrc(transform.from.c_str());
    displayView->setDisplay(transform.display.c_str());
    displayView->setView(transform.view.c_str());
    OCIO::LegacyViewingPipelineRcPtr const pipeline = OCIO::LegacyViewingPipeline::Create();
    pipeline->setDisplayViewTransform(displayView);
    pipeline->setLooksOverrideEnabled(!transform.looks.empty());
    pipeline->setLooksOverride(transform.looks.c_str());
    return pipeline->getProcessor(config);
}

/// Applies `processor` to the RGB of every pixel of the packed float
/// `pixels`, rows split across threads; alpha is left as it is. Returns
/// OpenColorIO's reason when a part fails, else empty.
std::string applyRgb(OCIO::ConstCPUProcessorRcPtr const& processor, OIIO::ImageBuf& pixels)
{
    OIIO::ImageSpec const& spec = pixels.spec();
    auto* const first = static_cast<char*>(pixels.localpixels());
    OIIO::stride_t const pixelStride = pixels.pixel_stride();
    OIIO::stride_t const rowStride = pixels.scanline_stride();
    std::mutex failing;
    std::string failure;
    auto const applyRows = [&](std::int64_t begin, std::int64_t end) {
        try {
            OCIO::PackedImageDesc rows(first + begin * rowStride, spec.width, long(end - begin), 3, OCIO::BIT_DEPTH_F32,
                                       sizeof(float), pixelStride, rowStride);
            processor->apply(rows);
        } catch (OCIO::Exception const& exception) {
            std::lock_guard<std::mutex> const lock(failing);
            failure = exception.what();
        }
    };
    OIIO::parallel_for_chunked(0, std::int64_t(spec.height) * spec.depth, 0, applyRows);
    return failure;
}

bool choose(OCIO::ConstConfigRcPtr const& config, DisplayViewRequest const& request, DisplayView& chosen,
            std::string& error)
{
    chosen.from = spaceOf(*config, request.from);
    if (chosen.from.empty()) {
        error = "'" + request.from +
                "' is a built-in colour space that this config does not have; the display "
                "transform needs one of the config's";
        return false;
    }
    std::vector<std::string> const displays = displaysOf(*config);
    if (displays.empty()) {
        error = "this config has no displays";
        return false;
    }
    std::string const display = request.display.empty() ? config->getDefaultDisplay() : request.display;
    chosen.display = matching(display, displays);
    if (chosen.display.empty()) {
        error = "unknown display '" + display + "'; the config's displays: " + quoted(displays);
        return false;
    }
    std::vector<std::string> const views = viewsOf(*config, chosen.display);
    std::string const view =
        request.view.empty() ? std::string(config->getDefaultView(chosen.display.c_str())) : request.view;
    chosen.view = matching(view, views);
    if (chosen.view.empty()) {
        error = views.empty() ? "the display '" + chosen.display + "' has no views"
                              : "unknown view '" + view + "' of the display '" + chosen.display +
                                    "'; its views: " + quoted(views);
        return false;
    }
    if (!chooseLooks(*config, request.looks, chosen.looks, error)) {
        return false;
    }
    chosen.result = config->getDisplayViewColorSpaceName(chosen.display.c_str(), chosen.view.c_str());
    if (chosen.result == OCIO::OCIO_VIEW_USE_DISPLAY_NAME) {
        chosen.result = chosen.display;
    }
    // The processor is built here, where a failure is only an exception;
    // OpenColorIO caches it for `applyDisplayView`.
    processorOf(config, chosen);
    return true;
}

} // namespace

bool chooseDisplayView(DisplayViewRequest const& request, DisplayView& chosen, std::string& error)
{
    OCIO::ConstConfigRcPtr const& config = detail::currentOcio();
    if (!config) {
        error = "the built-in colour spaces have no displays or views; give a config with --config";
        return false;
    }
    try {
        DisplayView made;
        if (!choose(config, request, made, error)) {
            return false;
        }
        chosen = std::move(made);
        return true;
    } catch (OCIO::Exception const& exception) {
        error = "cannot build the display transform: " + std::string(exception.what());
        return false;
    }
}

bool applyDisplayView(DisplayView const& transform, OIIO::ImageBuf& pixels, std::string& error)
{
    OCIO::ConstConfigRcPtr const& config = detail::currentOcio();
    if (!config) {
        error = "the built-in colour spaces have no displays or views; give a config with --config";
        return false;
    }
    int const channels = pixels.nchannels();
    if (pixels.spec().format != OIIO::TypeDesc::FLOAT || (channels != 3 && channels != 4) || pixels.deep()) {
        error = "the display transform needs float RGB or RGBA pixels";
        return false;
    }
    // Pixels held by an image cache are read into memory first.
    if (!pixels.make_writable(true)) {
        error = pixels.geterror();
        return false;
    }
    std::string failure;
    try {
        failure = applyRgb(processorOf(config, transform)->getDefaultCPUProcessor(), pixels);
    } catch (OCIO::Exception const& exception) {
        failure = exception.what();
    }
    if (!failure.empty()) {
        error = "cannot apply the display transform: " + detail::oneLine(failure);
        return false;
    }
    return true;
}

} // namespace orv::verra_sdk::kit
