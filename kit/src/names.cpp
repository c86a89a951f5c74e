#include <verra_sdk/kit/names.h>

#include <verra_sdk/kit/closest_names.h>

#include "current_config.h"
#include "processors.h"

#include <verra_sdk/color_route.h>
#include <verra_sdk/colorconfig.h>

#include <OpenImageIO/strutil.h>

#include <algorithm>
#include <array>

namespace orv::verra_sdk::kit {

namespace {

namespace OCIO = OCIO_NAMESPACE;
namespace Strutil = OIIO::Strutil;

/// The list holds them first, in this order.
std::array<char const*, 3> const kBuiltIns{"linear", "sRGB", "Rec709"};

std::string listed(std::string_view name)
{
    return std::string(ColorConfig::findColorSpace(String(std::string(name).c_str(), 0)).view());
}

/// The built-in equal to `name` apart from case, or empty.
std::string builtInLike(std::string_view name)
{
    for (char const* builtIn : kBuiltIns) {
        if (Strutil::iequals(name, builtIn)) {
            return builtIn;
        }
    }
    return {};
}

/// How OpenColorIO found `space` for the word `typed`.
ResolvedName howFound(OCIO::Config const& config, std::string const& typed, std::string const& space)
{
    for (int i = 0; config.hasRole(typed.c_str()) && i < config.getNumRoles(); ++i) {
        if (Strutil::iequals(config.getRoleName(i), typed)) {
            return {space, NameMatch::Role, config.getRoleName(i)};
        }
    }
    if (Strutil::iequals(typed, space)) {
        return {space, NameMatch::Inactive, ""};
    }
    OCIO::ConstColorSpaceRcPtr const found = config.getColorSpace(space.c_str());
    for (std::size_t i = 0; found && i < found->getNumAliases(); ++i) {
        if (Strutil::iequals(found->getAlias(i), typed)) {
            return {space, NameMatch::Alias, found->getAlias(i)};
        }
    }
    return {space, NameMatch::Alias, typed};
}

} // namespace

char const* nameMatchName(NameMatch how) noexcept
{
    switch (how) {
    case NameMatch::Listed:
        return "listed";
    case NameMatch::BuiltInShadows:
        return "built-in shadows";
    case NameMatch::BuiltInIsolated:
        return "built-in isolated";
    case NameMatch::Alias:
        return "alias";
    case NameMatch::Role:
        return "role";
    case NameMatch::Inactive:
        return "inactive";
    case NameMatch::Unknown:
        break;
    }
    return "unknown";
}

bool isBuiltIn(std::string_view name)
{
    return std::find(kBuiltIns.begin(), kBuiltIns.end(), name) != kBuiltIns.end();
}

ResolvedName resolveColorSpace(std::string_view typed)
{
    OCIO::ConstConfigRcPtr const& config = detail::currentOcio();
    std::string const direct = listed(typed);
    if (!direct.empty()) {
        if (config && isBuiltIn(direct)) {
            OCIO::ConstColorSpaceRcPtr const space = config->getColorSpace(direct.c_str());
            if (space && Strutil::iequals(space->getName(), direct)) {
                return {direct, NameMatch::BuiltInShadows, space->getName()};
            }
            if (!builtInConverts(direct)) {
                return {direct, NameMatch::BuiltInIsolated, ""};
            }
        }
        return {direct, NameMatch::Listed, ""};
    }
    std::string const trimmed(Strutil::strip(typed));
    OCIO::ConstColorSpaceRcPtr const space =
        config && !trimmed.empty() ? config->getColorSpace(trimmed.c_str()) : nullptr;
    if (!space) {
        return {};
    }
    ResolvedName resolved = howFound(*config, trimmed, space->getName());
    // An inactive space is not in the list; the module converts it by its
    // own name all the same.
    std::string const inList = listed(resolved.name);
    if (!inList.empty()) {
        resolved.name = inList;
    }
    return resolved;
}

std::vector<std::string> closestColorSpaces(std::string_view typed, std::size_t limit)
{
    std::vector<std::string> known;
    for (String const& space : ColorConfig::colorSpaces()) {
        std::string entry(space.view());
        if (!isBuiltIn(entry) || builtInConverts(entry)) {
            known.push_back(std::move(entry));
        }
    }
    for (std::string& inactive : inactiveColorSpaces()) {
        known.push_back(std::move(inactive));
    }
    return closestNames(typed, known, limit);
}

std::string unknownColorSpaceText(std::string_view typed)
{
    std::string const closest = detail::quoted(closestColorSpaces(typed));
    return "unknown colour space '" + std::string(typed) + "'" +
           (closest.empty() ? " ('colorconfig info' lists them all)" : "; closest: " + closest);
}

std::vector<std::string> inactiveColorSpaces()
{
    // All colour spaces but the active ones: OpenColorIO's own index of the
    // inactive spaces repeats names.
    OCIO::ConstConfigRcPtr const& config = detail::currentOcio();
    std::vector<std::string> names;
    int const count = config ? config->getNumColorSpaces(OCIO::SEARCH_REFERENCE_SPACE_ALL, OCIO::COLORSPACE_ALL) : 0;
    for (int i = 0; i < count; ++i) {
        char const* name = config->getColorSpaceNameByIndex(OCIO::SEARCH_REFERENCE_SPACE_ALL, OCIO::COLORSPACE_ALL, i);
        if (config->getIndexForColorSpace(name) < 0 && std::find(names.begin(), names.end(), name) == names.end()) {
            names.emplace_back(name);
        }
    }
    return names;
}

std::vector<RoleSpace> rolesWithSpaces()
{
    OCIO::ConstConfigRcPtr const& config = detail::currentOcio();
    std::vector<RoleSpace> roles;
    for (int i = 0; config && i < config->getNumRoles(); ++i) {
        roles.push_back({config->getRoleName(i), config->getRoleColorSpace(i)});
    }
    return roles;
}

std::vector<HiddenName> hiddenColorSpaces()
{
    OCIO::ConstConfigRcPtr const& config = detail::currentOcio();
    std::vector<HiddenName> hidden;
    int const count = config ? config->getNumColorSpaces() : 0;
    for (int i = 0; i < count; ++i) {
        std::string const name = config->getColorSpaceNameByIndex(i);
        std::string const builtIn = builtInLike(name);
        if (!builtIn.empty()) {
            hidden.push_back({name, HiddenReason::ShadowedByBuiltIn, builtIn});
            continue;
        }
        std::string const entry = listed(name);
        if (entry == name) {
            continue;
        }
        if (name == "default" || name == "rgb" || name == "RGB") {
            hidden.push_back({name, HiddenReason::Reserved, ""});
        } else {
            hidden.push_back({name, HiddenReason::ShadowedByEarlier, entry});
        }
    }
    return hidden;
}

bool builtInConverts(std::string const& builtIn)
{
    StringVector const list = ColorConfig::colorSpaces();
    if (list.size() <= kBuiltIns.size()) {
        return true;
    }
    // The first entry after the built-ins stands for the configuration. A
    // processor that cannot be built leaves its error in the shared
    // configuration, where it would read as a later failure: it is cleared.
    bool const converts = colorRoute(String(builtIn.c_str(), 0), list[kBuiltIns.size()]) != ColorRoute::None;
    colorConfig().geterror(true);
    return converts;
}

std::string resolvedNameText(ResolvedName const& resolved)
{
    switch (resolved.how) {
    case NameMatch::BuiltInShadows:
        return "built-in, shadows the config's '" + resolved.via + "'";
    case NameMatch::BuiltInIsolated:
        return "built-in, converts only to the other built-ins under this config";
    case NameMatch::Alias:
        return "alias of '" + resolved.name + "'";
    case NameMatch::Role:
        return "role " + resolved.via + " → '" + resolved.name + "'";
    case NameMatch::Inactive:
        return "inactive";
    case NameMatch::Listed:
    case NameMatch::Unknown:
        break;
    }
    return {};
}

std::string hiddenReasonText(HiddenName const& hidden)
{
    switch (hidden.reason) {
    case HiddenReason::ShadowedByBuiltIn:
        return "shadowed by the built-in '" + hidden.by + "'";
    case HiddenReason::ShadowedByEarlier:
        return "shadowed by '" + hidden.by + "' (same name apart from case)";
    case HiddenReason::Reserved:
        break;
    }
    return "dropped (a name the module reserves)";
}

} // namespace orv::verra_sdk::kit
