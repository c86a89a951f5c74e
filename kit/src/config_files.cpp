#include "config_files.h"

#include <set>
#include <utility>

namespace orv::verra_sdk::kit::detail {

namespace {

namespace OCIO = OCIO_NAMESPACE;

/// Collects the files that the transforms of one configuration name and
/// that its context cannot resolve. The configuration's own lists are read
/// by index, where every name finds its item.
class MissingFiles {
public:
    explicit MissingFiles(OCIO::ConstContextRcPtr context) : m_context(std::move(context)) {}

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

std::vector<std::string> missingFiles(OCIO::Config const& config, OCIO::ConstContextRcPtr const& context)
{
    MissingFiles files(context);
    int const spaces = config.getNumColorSpaces(OCIO::SEARCH_REFERENCE_SPACE_ALL, OCIO::COLORSPACE_ALL);
    for (int i = 0; i < spaces; ++i) {
        OCIO::ConstColorSpaceRcPtr const space = config.getColorSpace(
            config.getColorSpaceNameByIndex(OCIO::SEARCH_REFERENCE_SPACE_ALL, OCIO::COLORSPACE_ALL, i));
        files.visit(space->getTransform(OCIO::COLORSPACE_DIR_TO_REFERENCE));
        files.visit(space->getTransform(OCIO::COLORSPACE_DIR_FROM_REFERENCE));
    }
    for (int i = 0; i < config.getNumLooks(); ++i) {
        OCIO::ConstLookRcPtr const look = config.getLook(config.getLookNameByIndex(i));
        files.visit(look->getTransform());
        files.visit(look->getInverseTransform());
    }
    for (int i = 0; i < config.getNumViewTransforms(); ++i) {
        OCIO::ConstViewTransformRcPtr const view = config.getViewTransform(config.getViewTransformNameByIndex(i));
        files.visit(view->getTransform(OCIO::VIEWTRANSFORM_DIR_TO_REFERENCE));
        files.visit(view->getTransform(OCIO::VIEWTRANSFORM_DIR_FROM_REFERENCE));
    }
    int const named = config.getNumNamedTransforms(OCIO::NAMEDTRANSFORM_ALL);
    for (int i = 0; i < named; ++i) {
        OCIO::ConstNamedTransformRcPtr const transform =
            config.getNamedTransform(config.getNamedTransformNameByIndex(OCIO::NAMEDTRANSFORM_ALL, i));
        files.visit(transform->getTransform(OCIO::TRANSFORM_DIR_FORWARD));
        files.visit(transform->getTransform(OCIO::TRANSFORM_DIR_INVERSE));
    }
    return files.problems();
}

} // namespace orv::verra_sdk::kit::detail
