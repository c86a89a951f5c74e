#include "support/ocio_config.h"

#include <OpenImageIO/strutil.h>

#include <algorithm>
#include <sstream>

namespace verra_test {

std::string yamlQuote(std::string const& text)
{
    return "\"" + OIIO::Strutil::replace(OIIO::Strutil::replace(text, "\\", "\\\\", true), "\"", "\\\"", true) + "\"";
}

std::string OcioConfigText::str() const
{
    auto const has = [](auto const& list, auto const& test) { return std::any_of(list.begin(), list.end(), test); };
    std::string const first = yamlQuote(colorSpaces.empty() ? std::string("raw") : colorSpaces.front());
    std::ostringstream out;
    out << "ocio_profile_version: 2.1\n\nroles:\n";
    for (auto const& [role, space] : roles) {
        out << "  " << yamlQuote(role) << ": " << yamlQuote(space) << "\n";
    }
    // A colour space named "default" (in any case) cannot live beside a role
    // of that name; the Default file rule then names the colour space itself.
    if (!has(roles, [](auto const& r) { return r.first == "default"; }) &&
        !has(colorSpaces, [](std::string const& s) { return OIIO::Strutil::iequals(s, "default"); })) {
        out << "  default: " << first << "\n";
    }
    out << "\nfile_rules:\n";
    for (std::string const& rule : fileRules) {
        out << "  " << rule << "\n";
    }
    out << "  - !<Rule> {name: Default, colorspace: default}\n\ndisplays:\n" << (displays.empty() ? "  {}\n" : "");
    for (auto const& [display, viewNames] : displays) {
        out << "  " << yamlQuote(display) << ":\n" << (viewNames.empty() ? "    []\n" : "");
        for (std::string const& view : viewNames) {
            out << "    - !<View> {name: " << yamlQuote(view) << ", colorspace: " << first << "}\n";
        }
    }
    out << "\nactive_displays: [" << activeDisplays << "]\nactive_views: [" << activeViews << "]\n"
        << (looks.empty() ? "" : "\nlooks:\n");
    for (std::string const& look : looks) {
        out << "  - !<Look> {name: " << yamlQuote(look) << ", process_space: " << first
            << ", transform: !<ExponentTransform> {value: [1, 1, 1, 1]}}\n";
    }
    out << "\ncolorspaces:\n";
    for (std::string const& space : colorSpaces) {
        bool const srgb = std::find(srgbSpaces.begin(), srgbSpaces.end(), space) != srgbSpaces.end();
        out << "  - !<ColorSpace>\n    name: " << yamlQuote(space) << "\n    family: \"\"\n    bitdepth: 32f\n"
            << (srgb ? "    to_scene_reference: !<ExponentWithLinearTransform> {gamma: 2.4, offset: 0.055}\n" : "");
    }
    return out.str();
}

} // namespace verra_test
