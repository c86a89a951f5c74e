#include "config_names.h"

#include <verra_sdk/color_route.h>
#include <verra_sdk/colorconfig.h>

#include <OpenImageIO/strutil.h>

#include <array>

namespace colorconfig {

namespace {

namespace OCIO = OCIO_NAMESPACE;
namespace sdk = orv::verra_sdk;
namespace Strutil = OIIO::Strutil;

/// The list holds them first, in this order.
std::array<char const*, 3> const kBuiltIns{"linear", "sRGB", "Rec709"};

std::string listed(std::string const& name)
{
    return std::string(sdk::ColorConfig::findColorSpace(orv::String(name)).view());
}

/// The built-in equal to `name` apart from case, or empty.
std::string builtInLike(std::string const& name)
{
    for (char const* builtIn : kBuiltIns) {
        if (Strutil::iequals(name, builtIn)) {
            return builtIn;
        }
    }
    return {};
}

/// How OpenColorIO found `space` for the word `typed`.
std::string howFound(OCIO::Config const& config, std::string const& typed, std::string const& space)
{
    if (config.hasRole(typed.c_str())) {
        for (int i = 0; i < config.getNumRoles(); ++i) {
            if (Strutil::iequals(config.getRoleName(i), typed)) {
                return "role " + std::string(config.getRoleName(i)) + " → '" + space + "'";
            }
        }
    }
    if (!Strutil::iequals(typed, space)) {
        return "alias of '" + space + "'";
    }
    return "inactive";
}

} // namespace

bool isBuiltIn(std::string const& name)
{
    return name == kBuiltIns[0] || name == kBuiltIns[1] || name == kBuiltIns[2];
}

ResolvedName resolveName(std::string const& typed, OCIO::ConstConfigRcPtr const& config)
{
    std::string const direct = listed(typed);
    if (!direct.empty()) {
        ResolvedName resolved{direct, ""};
        if (config && isBuiltIn(direct)) {
            OCIO::ConstColorSpaceRcPtr const space = config->getColorSpace(direct.c_str());
            if (space && Strutil::iequals(space->getName(), direct)) {
                resolved.how = "built-in, shadows the config's '" + std::string(space->getName()) + "'";
            } else if (!builtInConverts(direct)) {
                resolved.how = "built-in, converts only to the other built-ins under this config";
            }
        }
        return resolved;
    }
    if (!config) {
        return {};
    }
    std::string const trimmed(Strutil::strip(typed));
    OCIO::ConstColorSpaceRcPtr const space = trimmed.empty() ? nullptr : config->getColorSpace(trimmed.c_str());
    if (!space) {
        return {};
    }
    std::string const canonical = space->getName();
    std::string const how = howFound(*config, trimmed, canonical);
    std::string const inList = listed(canonical);
    // An inactive space is not in the list; the module converts it by its
    // own name all the same.
    return {inList.empty() ? canonical : inList, how};
}

std::vector<std::string> inactiveColorSpaces(OCIO::ConstConfigRcPtr const& config)
{
    std::vector<std::string> names;
    int const count = config ? config->getNumColorSpaces(OCIO::SEARCH_REFERENCE_SPACE_ALL, OCIO::COLORSPACE_INACTIVE)
                             : 0;
    for (int i = 0; i < count; ++i) {
        names.emplace_back(
            config->getColorSpaceNameByIndex(OCIO::SEARCH_REFERENCE_SPACE_ALL, OCIO::COLORSPACE_INACTIVE, i));
    }
    return names;
}

std::vector<std::pair<std::string, std::string>> rolesWithSpaces(OCIO::ConstConfigRcPtr const& config)
{
    std::vector<std::pair<std::string, std::string>> roles;
    for (int i = 0; config && i < config->getNumRoles(); ++i) {
        roles.emplace_back(config->getRoleName(i), config->getRoleColorSpace(i));
    }
    return roles;
}

std::vector<HiddenName> hiddenNames(OCIO::ConstConfigRcPtr const& config)
{
    std::vector<HiddenName> hidden;
    int const count = config ? config->getNumColorSpaces() : 0;
    for (int i = 0; i < count; ++i) {
        std::string const name = config->getColorSpaceNameByIndex(i);
        std::string const builtIn = builtInLike(name);
        if (!builtIn.empty()) {
            hidden.push_back({name, "shadowed by the built-in '" + builtIn + "'"});
            continue;
        }
        std::string const entry = listed(name);
        if (entry == name) {
            continue;
        }
        if (name == "default" || name == "rgb" || name == "RGB") {
            hidden.push_back({name, "dropped (a name the module reserves)"});
        } else {
            hidden.push_back({name, "shadowed by '" + entry + "' (same name apart from case)"});
        }
    }
    return hidden;
}

bool builtInConverts(std::string const& builtIn)
{
    orv::StringVector const list = sdk::ColorConfig::colorSpaces();
    if (list.size() <= kBuiltIns.size()) {
        return true;
    }
    // The first entry after the built-ins stands for the configuration. A
    // processor that cannot be built leaves its error in the shared
    // configuration, where it would read as a later failure: it is cleared.
    bool const converts = sdk::colorRoute(orv::String(builtIn), list[kBuiltIns.size()]) != sdk::ColorRoute::None;
    sdk::colorConfig().geterror(true);
    return converts;
}

} // namespace colorconfig
