#include "display_view.h"

#include <verra_sdk/colorconfig.h>

#include <OpenImageIO/imagebufalgo.h>
#include <OpenImageIO/strutil.h>

#include <vector>

namespace colorconfig {

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

std::vector<std::string> viewsOf(OCIO::Config const& config, std::string const& display)
{
    std::vector<std::string> names;
    for (int i = 0; i < config.getNumViews(display.c_str()); ++i) {
        names.emplace_back(config.getView(display.c_str(), i));
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

bool choose(OCIO::ConstConfigRcPtr const& config, DisplayViewRequest const& request, DisplayView& chosen,
            std::string& error)
{
    chosen.from = spaceOf(*config, request.from);
    if (chosen.from.empty()) {
        error = "'" + request.from + "' is a built-in colour space that this config does not have; the display "
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
    // The processor is built once here, where a failure is only an
    // exception, so that OpenImageIO builds one only when it succeeds.
    OCIO::DisplayViewTransformRcPtr const transform = OCIO::DisplayViewTransform::Create();
    transform->setSrc(chosen.from.c_str());
    transform->setDisplay(chosen.display.c_str());
    transform->setView(chosen.view.c_str());
    OCIO::LegacyViewingPipelineRcPtr const pipeline = OCIO::LegacyViewingPipeline::Create();
    pipeline->setDisplayViewTransform(transform);
    pipeline->setLooksOverrideEnabled(!chosen.looks.empty());
    pipeline->setLooksOverride(chosen.looks.c_str());
    pipeline->getProcessor(config);
    return true;
}

} // namespace

bool chooseDisplayView(OCIO::ConstConfigRcPtr const& config, DisplayViewRequest const& request,
                       DisplayView& chosen, std::string& error)
{
    if (!config) {
        error = "the built-in colour spaces have no displays or views; give a config with --config";
        return false;
    }
    try {
        return choose(config, request, chosen, error);
    } catch (OCIO::Exception const& exception) {
        error = "cannot build the display transform: " + std::string(exception.what());
        return false;
    }
}

bool applyDisplayView(DisplayView const& transform, OIIO::ImageBuf& pixels, std::string& error)
{
    if (!OIIO::ImageBufAlgo::ociodisplay(pixels, pixels, transform.display, transform.view, transform.from,
                                         transform.looks, false, "", "", &orv::verra_sdk::colorConfig())) {
        error = pixels.geterror();
        return false;
    }
    return true;
}

} // namespace colorconfig
