#include "color_names.h"

#include "closest_names.h"
#include "console.h"

#include <verra_sdk/colorconfig.h>

#include <vector>

namespace colorconfig {

namespace {

/// How many close names an error message proposes.
constexpr std::size_t kSuggestions = 3;

std::string joined(std::vector<std::string> const& names)
{
    std::string text;
    for (std::string const& name : names) {
        text += (text.empty() ? "'" : ", '") + name + "'";
    }
    return text;
}

} // namespace

std::vector<std::string> closestColorSpaces(std::string const& name, OCIO_NAMESPACE::ConstConfigRcPtr const& config)
{
    std::vector<std::string> known;
    for (orv::String const& space : orv::verra_sdk::ColorConfig::colorSpaces()) {
        std::string entry(space.view());
        if (!isBuiltIn(entry) || builtInConverts(entry)) {
            known.push_back(std::move(entry));
        }
    }
    for (std::string& inactive : inactiveColorSpaces(config)) {
        known.push_back(std::move(inactive));
    }
    return closestNames(name, known, kSuggestions);
}

void reportUnknownColorSpace(std::string const& name, OCIO_NAMESPACE::ConstConfigRcPtr const& config)
{
    std::vector<std::string> const close = closestColorSpaces(name, config);
    if (close.empty()) {
        console::error("unknown colour space '{}' ('colorconfig info' lists them all)", name);
    } else {
        console::error("unknown colour space '{}'; closest: {}", name, joined(close));
    }
}

orv::String resolveColorSpace(std::string const& name, OCIO_NAMESPACE::ConstConfigRcPtr const& config)
{
    ResolvedName const resolved = resolveName(name, config);
    if (resolved.name.empty()) {
        reportUnknownColorSpace(name, config);
    }
    return orv::String(resolved.name);
}

} // namespace colorconfig
