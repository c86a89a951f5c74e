#include <verra_sdk/kit/config_check.h>

#include "current_config.h"

#include <algorithm>
#include <array>
#include <vector>

namespace orv::verra_sdk::kit {

namespace OCIO = OCIO_NAMESPACE;

namespace {

/// The configuration checked, and the context its processors are built in.
struct Checked {
    OCIO::Config const& config;
    OCIO::ConstContextRcPtr context;
};

/// OpenColorIO's reason when it cannot build a processor of `transform`;
/// empty when it can (or when there is no transform).
std::string processorFailure(Checked const& checked, OCIO::ConstTransformRcPtr const& transform)
{
    try {
        if (transform) {
            checked.config.getProcessor(checked.context, transform, OCIO::TRANSFORM_DIR_FORWARD);
        }
        return {};
    } catch (OCIO::Exception const& exception) {
        return exception.what();
    }
}

/// The first failure of the transforms' processors, or empty.
std::string firstFailure(Checked const& checked, std::initializer_list<OCIO::ConstTransformRcPtr> transforms)
{
    for (OCIO::ConstTransformRcPtr const& transform : transforms) {
        std::string reason = processorFailure(checked, transform);
        if (!reason.empty()) {
            return reason;
        }
    }
    return {};
}

/// The names of every colour space of `config`, active and inactive.
std::vector<std::string> allSpaces(OCIO::Config const& config)
{
    std::vector<std::string> names;
    int const count = config.getNumColorSpaces(OCIO::SEARCH_REFERENCE_SPACE_ALL, OCIO::COLORSPACE_ALL);
    for (int i = 0; i < count; ++i) {
        names.emplace_back(config.getColorSpaceNameByIndex(OCIO::SEARCH_REFERENCE_SPACE_ALL, OCIO::COLORSPACE_ALL, i));
    }
    return names;
}

void checkColorSpaces(Checked const& checked, CheckReport& report)
{
    OCIO::Config const& config = checked.config;
    std::vector<std::string> const names = allSpaces(config);
    report.colorSpaceCount = static_cast<int>(names.size());
    for (std::string const& name : names) {
        OCIO::ConstColorSpaceRcPtr const space = config.getColorSpace(name.c_str());
        std::string reason = firstFailure(checked, {space->getTransform(OCIO::COLORSPACE_DIR_TO_REFERENCE),
                                                    space->getTransform(OCIO::COLORSPACE_DIR_FROM_REFERENCE)});
        if (!reason.empty()) {
            report.colorSpaces.push_back({name, std::move(reason)});
        }
    }
}

/// The colour spaces to show the views from, best first: scene-linear, then
/// the config's order; none that is data (the display transform would be
/// skipped) or that fails itself (its failure would read as the view's).
std::vector<std::string> viewSources(OCIO::Config const& config, CheckReport const& report)
{
    std::vector<std::string> candidates = allSpaces(config);
    if (OCIO::ConstColorSpaceRcPtr const sceneLinear = config.getColorSpace(OCIO::ROLE_SCENE_LINEAR)) {
        candidates.insert(candidates.begin(), sceneLinear->getName());
    }
    std::vector<std::string> sources;
    for (std::string const& name : candidates) {
        bool const fails = std::any_of(report.colorSpaces.begin(), report.colorSpaces.end(),
                                       [&name](Failure const& failure) { return failure.what == name; });
        if (!fails && !config.getColorSpace(name.c_str())->isData()) {
            sources.push_back(name);
        }
    }
    return sources;
}

/// The first of `sources` that is not the colour space of the view `view`
/// of `display`: the conversion to it would be skipped. Empty when there is
/// none.
std::string sourceFor(OCIO::Config const& config, std::vector<std::string> const& sources, char const* display,
                      char const* view)
{
    std::string target = config.getDisplayViewColorSpaceName(display, view);
    if (target == OCIO::OCIO_VIEW_USE_DISPLAY_NAME) {
        target = display;
    }
    OCIO::ConstColorSpaceRcPtr const viewSpace = config.getColorSpace(target.c_str());
    std::string const own = viewSpace ? viewSpace->getName() : "";
    for (std::string const& name : sources) {
        if (name != own) {
            return name;
        }
    }
    return {};
}

void checkViews(Checked const& checked, CheckReport& report)
{
    OCIO::Config const& config = checked.config;
    std::vector<std::string> const sources = viewSources(config, report);
    for (int d = 0; d < config.getNumDisplaysAll(); ++d) {
        char const* display = config.getDisplayAll(d);
        for (OCIO::ViewType const type : {OCIO::VIEW_DISPLAY_DEFINED, OCIO::VIEW_SHARED}) {
            for (int v = 0; v < config.getNumViews(type, display); ++v) {
                char const* view = config.getView(type, display, v);
                std::string const source = sourceFor(config, sources, display, view);
                OCIO::DisplayViewTransformRcPtr const transform = OCIO::DisplayViewTransform::Create();
                transform->setSrc(source.c_str());
                transform->setDisplay(display);
                transform->setView(view);
                ++report.viewCount;
                std::string reason = source.empty() ? std::string() : processorFailure(checked, transform);
                if (!reason.empty()) {
                    report.views.push_back({std::string(display) + " / " + view, std::move(reason)});
                }
            }
        }
    }
}

void checkLooks(Checked const& checked, CheckReport& report)
{
    OCIO::Config const& config = checked.config;
    report.lookCount = config.getNumLooks();
    for (int i = 0; i < report.lookCount; ++i) {
        OCIO::ConstLookRcPtr const look = config.getLook(config.getLookNameByIndex(i));
        std::string reason = firstFailure(checked, {look->getTransform(), look->getInverseTransform()});
        if (!reason.empty()) {
            report.looks.push_back({look->getName(), std::move(reason)});
        }
    }
}

void guessFileNames(CheckReport& report)
{
    static std::array<char const*, 5> const kFiles{"render.exr", "plate.dpx", "texture.png", "photo.jpg", "scan.tif"};
    for (char const* file : kFiles) {
        report.fileNames.push_back({file, guessColorSpace(file, true)});
    }
}

} // namespace

bool CheckReport::broken() const
{
    return !read || !status.errors.empty() || !status.warnings.empty() || !validation.empty() || !colorSpaces.empty() ||
           !views.empty() || !looks.empty();
}

CheckReport checkConfig(ContextVariables const& context)
{
    CheckReport report;
    report.status = configStatus(context);
    if (!report.status.usesFile() && report.status.errors.empty()) {
        report.status.errors.push_back("no config file is in use, only the built-in colour spaces: name one with "
                                       "--config, ocio.txt or $OCIO");
    }
    OCIO::ConstConfigRcPtr const config = detail::currentOcio();
    if (!config) {
        return report;
    }
    report.read = true;
    try {
        config->validate();
    } catch (OCIO::Exception const& exception) {
        report.validation = exception.what();
    }
    try {
        Checked const checked{*config, detail::contextWith(*config, context)};
        checkColorSpaces(checked, report);
        checkViews(checked, report);
        checkLooks(checked, report);
        report.defaultDisplay = config->getDefaultDisplay();
        report.defaultView = config->getDefaultView(report.defaultDisplay.c_str());
    } catch (OCIO::Exception const& exception) {
        report.validation += (report.validation.empty() ? "" : " ") + std::string(exception.what());
    }
    guessFileNames(report);
    report.hidden = hiddenColorSpaces();
    report.roles = rolesWithSpaces();
    return report;
}

} // namespace orv::verra_sdk::kit
