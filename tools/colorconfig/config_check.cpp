#include "config_check.h"

#include <OpenColorIO/OpenColorIO.h>

#include <verra_sdk/colorconfig.h>

#include <array>
#include <set>

namespace colorconfig {

namespace {

namespace OCIO = OCIO_NAMESPACE;

/// Collects the files that the transforms of one configuration name and
/// that its context cannot resolve.
class MissingFiles {
public:
    explicit MissingFiles(OCIO::ConstConfigRcPtr const& config) : m_context(config->getCurrentContext()) {}

    void visit(OCIO::ConstTransformRcPtr const& transform)
    {
        if (!transform) {
            return;
        }
        if (auto const group = OCIO::DynamicPtrCast<OCIO::GroupTransform const>(transform)) {
            for (int i = 0; i < group->getNumTransforms(); ++i) {
                visit(group->getTransform(i));
            }
        } else if (auto const file = OCIO::DynamicPtrCast<OCIO::FileTransform const>(transform)) {
            check(file->getSrc());
        }
    }

    std::vector<std::string> const& problems() const { return m_problems; }

private:
    void check(char const* source)
    {
        std::string const name = source != nullptr ? source : "";
        if (!m_checked.insert(name).second) {
            return;
        }
        try {
            m_context->resolveFileLocation(name.c_str());
        } catch (OCIO::Exception const& exception) {
            m_problems.emplace_back(exception.what());
        }
    }

    OCIO::ConstContextRcPtr m_context;
    std::set<std::string> m_checked;
    std::vector<std::string> m_problems;
};

} // namespace

std::vector<std::string> missingFiles(OCIO::ConstConfigRcPtr const& config)
{
    MissingFiles files(config);
    int const spaces = config->getNumColorSpaces(OCIO::SEARCH_REFERENCE_SPACE_ALL, OCIO::COLORSPACE_ALL);
    for (int i = 0; i < spaces; ++i) {
        OCIO::ConstColorSpaceRcPtr const space = config->getColorSpace(
            config->getColorSpaceNameByIndex(OCIO::SEARCH_REFERENCE_SPACE_ALL, OCIO::COLORSPACE_ALL, i));
        if (space) {
            files.visit(space->getTransform(OCIO::COLORSPACE_DIR_TO_REFERENCE));
            files.visit(space->getTransform(OCIO::COLORSPACE_DIR_FROM_REFERENCE));
        }
    }
    for (int i = 0; i < config->getNumLooks(); ++i) {
        OCIO::ConstLookRcPtr const look = config->getLook(config->getLookNameByIndex(i));
        if (look) {
            files.visit(look->getTransform());
            files.visit(look->getInverseTransform());
        }
    }
    for (int i = 0; i < config->getNumViewTransforms(); ++i) {
        OCIO::ConstViewTransformRcPtr const view = config->getViewTransform(config->getViewTransformNameByIndex(i));
        if (view) {
            files.visit(view->getTransform(OCIO::VIEWTRANSFORM_DIR_TO_REFERENCE));
            files.visit(view->getTransform(OCIO::VIEWTRANSFORM_DIR_FROM_REFERENCE));
        }
    }
    int const named = config->getNumNamedTransforms(OCIO::NAMEDTRANSFORM_ALL);
    for (int i = 0; i < named; ++i) {
        OCIO::ConstNamedTransformRcPtr const transform =
            config->getNamedTransform(config->getNamedTransformNameByIndex(OCIO::NAMEDTRANSFORM_ALL, i));
        if (transform) {
            files.visit(transform->getTransform(OCIO::TRANSFORM_DIR_FORWARD));
            files.visit(transform->getTransform(OCIO::TRANSFORM_DIR_INVERSE));
        }
    }
    return files.problems();
}

namespace {

/// OpenColorIO's reason when it cannot build a processor of `transform`;
/// empty when it can (or when there is no transform).
std::string processorFailure(OCIO::Config const& config, OCIO::ConstTransformRcPtr const& transform)
{
    try {
        if (transform) {
            config.getProcessor(transform);
        }
        return {};
    } catch (OCIO::Exception const& exception) {
        return exception.what();
    }
}

/// The first failure of the transforms' processors, or empty.
std::string firstFailure(OCIO::Config const& config, std::initializer_list<OCIO::ConstTransformRcPtr> transforms)
{
    for (OCIO::ConstTransformRcPtr const& transform : transforms) {
        std::string reason = processorFailure(config, transform);
        if (!reason.empty()) {
            return reason;
        }
    }
    return {};
}

void checkColorSpaces(OCIO::Config const& config, CheckReport& report)
{
    report.colorSpaceCount = config.getNumColorSpaces();
    for (int i = 0; i < report.colorSpaceCount; ++i) {
        OCIO::ConstColorSpaceRcPtr const space = config.getColorSpace(config.getColorSpaceNameByIndex(i));
        std::string reason = firstFailure(config, {space->getTransform(OCIO::COLORSPACE_DIR_TO_REFERENCE),
                                                   space->getTransform(OCIO::COLORSPACE_DIR_FROM_REFERENCE)});
        if (!reason.empty()) {
            report.colorSpaces.push_back({space->getName(), std::move(reason)});
        }
    }
}

void checkViews(OCIO::Config const& config, CheckReport& report)
{
    // The views are shown from scene-linear, else from the first colour space.
    std::string const source = config.hasRole(OCIO::ROLE_SCENE_LINEAR) || config.getNumColorSpaces() == 0
                                   ? std::string(OCIO::ROLE_SCENE_LINEAR)
                                   : std::string(config.getColorSpaceNameByIndex(0));
    for (int d = 0; d < config.getNumDisplays(); ++d) {
        char const* display = config.getDisplay(d);
        for (int v = 0; v < config.getNumViews(display); ++v) {
            char const* view = config.getView(display, v);
            OCIO::DisplayViewTransformRcPtr const transform = OCIO::DisplayViewTransform::Create();
            transform->setSrc(source.c_str());
            transform->setDisplay(display);
            transform->setView(view);
            ++report.viewCount;
            std::string reason = processorFailure(config, transform);
            if (!reason.empty()) {
                report.views.push_back({std::string(display) + " / " + view, std::move(reason)});
            }
        }
    }
}

void checkLooks(OCIO::Config const& config, CheckReport& report)
{
    report.lookCount = config.getNumLooks();
    for (int i = 0; i < report.lookCount; ++i) {
        OCIO::ConstLookRcPtr const look = config.getLook(config.getLookNameByIndex(i));
        std::string reason = firstFailure(config, {look->getTransform(), look->getInverseTransform()});
        if (!reason.empty()) {
            report.looks.push_back({look->getName(), std::move(reason)});
        }
    }
}

void guessFileNames(OCIO::Config const& config, CheckReport& report)
{
    static std::array<char const*, 5> const kFiles{"render.exr", "plate.dpx", "texture.png", "photo.jpg",
                                                   "scan.tif"};
    OCIO::ConstFileRulesRcPtr const rules = config.getFileRules();
    for (char const* file : kFiles) {
        std::size_t rule = 0;
        std::string const space = config.getColorSpaceFromFilepath(file, rule);
        report.fileRules.push_back({file, space, rule < rules->getNumEntries() ? rules->getName(rule) : ""});
    }
}

} // namespace

bool CheckReport::broken() const
{
    return !read || !problems.empty() || !validation.empty() || !colorSpaces.empty() ||
           !views.empty() || !looks.empty();
}

CheckReport checkConfig(LoadedConfig const& loaded)
{
    CheckReport report;
    report.problems = loaded.problems;
    if (loaded.usesFile) {
        report.configFile = orv::verra_sdk::colorConfig().configname();
    }
    if (!loaded.usesFile && report.problems.empty()) {
        report.problems.push_back("no config file is in use, only the built-in colour spaces: name one with "
                                  "--config, ocio.txt or $OCIO");
    }
    if (!loaded.ocio) {
        return report;
    }
    report.read = true;
    OCIO::Config const& config = *loaded.ocio;
    try {
        config.validate();
    } catch (OCIO::Exception const& exception) {
        report.validation = exception.what();
    }
    try {
        checkColorSpaces(config, report);
        checkViews(config, report);
        checkLooks(config, report);
        guessFileNames(config, report);
        report.defaultDisplay = config.getDefaultDisplay();
        report.defaultView = config.getDefaultView(report.defaultDisplay.c_str());
    } catch (OCIO::Exception const& exception) {
        report.validation += (report.validation.empty() ? "" : " ") + std::string(exception.what());
    }
    report.hidden = hiddenNames(loaded.ocio);
    report.roles = rolesWithSpaces(loaded.ocio);
    return report;
}

} // namespace colorconfig
