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

void reportUnknownColorSpace(std::string const& name)
{
    std::vector<std::string> listed;
    for (orv::String const& space : orv::verra_sdk::ColorConfig::colorSpaces()) {
        listed.emplace_back(space.view());
    }
    std::vector<std::string> const close = closestNames(name, listed, kSuggestions);
    if (close.empty()) {
        console::error("unknown colour space '{}' ('colorconfig info' lists them all)", name);
    } else {
        console::error("unknown colour space '{}'; closest: {}", name, joined(close));
    }
}

orv::String resolveColorSpace(std::string const& name)
{
    orv::String const listed = orv::verra_sdk::ColorConfig::findColorSpace(orv::String(name));
    if (listed.isEmpty()) {
        reportUnknownColorSpace(name);
    }
    return listed;
}

} // namespace colorconfig
