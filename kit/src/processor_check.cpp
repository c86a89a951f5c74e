#include <verra_sdk/kit/processor_check.h>

#include "current_config.h"

#include <OpenImageIO/strutil.h>

namespace orv::verra_sdk::kit {

namespace {

namespace OCIO = OCIO_NAMESPACE;

/// The config's colour space `name` (a name, alias or role); the built-in
/// "linear", which the config may not have, stands for its scene_linear
/// role. Null for a built-in the config does not have.
OCIO::ConstColorSpaceRcPtr spaceOf(OCIO::Config const& config, std::string const& name)
{
    OCIO::ConstColorSpaceRcPtr space = config.getColorSpace(name.c_str());
    if (!space && OIIO::Strutil::iequals(name, "linear")) {
        space = config.getColorSpace(OCIO::ROLE_SCENE_LINEAR);
    }
    return space;
}

} // namespace

std::string conversionProblem(std::string const& from, std::string const& to)
{
    OCIO::ConstConfigRcPtr const& config = detail::currentOcio();
    if (!config) {
        return {};
    }
    try {
        OCIO::ConstColorSpaceRcPtr const source = spaceOf(*config, from);
        OCIO::ConstColorSpaceRcPtr const target = spaceOf(*config, to);
        if (source && target) {
            config->getProcessor(source, target);
        }
    } catch (OCIO::Exception const& exception) {
        return detail::oneLine(exception.what());
    }
    return {};
}

} // namespace orv::verra_sdk::kit
