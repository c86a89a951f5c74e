#include <verra_sdk/kit/display_view.h>

#include "current_config.h"
#include "processors.h"

#include <vector>

namespace orv::verra_sdk::kit {

namespace {

namespace OCIO = OCIO_NAMESPACE;
using detail::matching;
using detail::quoted;

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

bool choose(OCIO::ConstConfigRcPtr const& config, DisplayViewRequest const& request, DisplayView& chosen,
            std::string& error)
{
    chosen.from = request.from;
    if (!detail::configSpaceNamed(*config, chosen.from, error)) {
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
    if (!detail::chooseLooks(*config, request.looks, chosen.looks, error)) {
        return false;
    }
    chosen.result = config->getDisplayViewColorSpaceName(chosen.display.c_str(), chosen.view.c_str());
    if (chosen.result == OCIO::OCIO_VIEW_USE_DISPLAY_NAME) {
        chosen.result = chosen.display;
    }
    chosen.inverse = request.inverse;
    chosen.context = request.context;
    if (chosen.inverse) {
        chosen.result = chosen.from;
    }
    // The processor is built here, where a failure is only an exception;
    // OpenColorIO caches it for `applyDisplayView`.
    detail::displayViewProcessor(config, chosen);
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
        error = std::string(request.inverse ? "cannot invert" : "cannot build") +
                " the display transform: " + detail::oneLine(exception.what());
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
    OCIO::ConstProcessorRcPtr processor;
    try {
        processor = detail::displayViewProcessor(config, transform);
    } catch (OCIO::Exception const& exception) {
        error = "cannot apply the display transform: " + detail::oneLine(exception.what());
        return false;
    }
    return detail::applyProcessor(processor, pixels, "the display transform", error);
}

namespace detail {

OCIO::ConstProcessorRcPtr displayViewProcessor(OCIO::ConstConfigRcPtr const& config, DisplayView const& transform)
{
    OCIO::DisplayViewTransformRcPtr const displayView = OCIO::DisplayViewTransform::Create();
    displayView->setSrc(transform.from.c_str());
    displayView->setDisplay(transform.display.c_str());
    displayView->setView(transform.view.c_str());
    OCIO::LegacyViewingPipelineRcPtr const pipeline = OCIO::LegacyViewingPipeline::Create();
    pipeline->setDisplayViewTransform(displayView);
    pipeline->setLooksOverrideEnabled(!transform.looks.empty());
    pipeline->setLooksOverride(transform.looks.c_str());
    OCIO::ConstContextRcPtr const context = contextWith(*config, transform.context);
    OCIO::ConstProcessorRcPtr const forward = pipeline->getProcessor(config, context);
    if (!transform.inverse) {
        return forward;
    }
    // The pipeline has no direction of its own: its steps, inverted.
    return config->getProcessor(context, forward->createGroupTransform(), OCIO::TRANSFORM_DIR_INVERSE);
}

} // namespace detail

} // namespace orv::verra_sdk::kit
