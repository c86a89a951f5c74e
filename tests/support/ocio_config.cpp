#include "support/ocio_config.h"

#include <algorithm>
#include <cctype>
#include <sstream>

namespace verra_test {

std::string yamlQuote(std::string const& text)
{
    std::string quoted = "\"";
    for (char c : text) {
        if (c == '"' || c == '\\') {
            quoted += '\\';
        }
        quoted += c;
    }
    return quoted + "\"";
}

std::string OcioConfigText::str() const
{
    std::ostringstream out;
    out << "ocio_profile_version: 2.1\n\n";

    std::string const first = colorSpaces.empty() ? std::string("raw") : colorSpaces.front();
    out << "roles:\n";
    bool hasDefault = false;
    for (auto const& [role, space] : roles) {
        out << "  " << yamlQuote(role) << ": " << yamlQuote(space) << "\n";
        hasDefault = hasDefault || role == "default";
    }
    // A colour space named "default" (in any case) cannot live beside a role
    // of that name; the Default file rule then names the colour space itself.
    bool const spaceNamedDefault = std::any_of(colorSpaces.begin(), colorSpaces.end(), [](std::string const& s) {
        return s.size() == 7 && std::equal(s.begin(), s.end(), "default", [](char a, char b) {
                   return std::tolower(static_cast<unsigned char>(a)) == b;
               });
    });
    if (!hasDefault && !spaceNamedDefault) {
        out << "  default: " << yamlQuote(first) << "\n";
    }

    out << "\nfile_rules:\n";
    for (std::string const& rule : fileRules) {
        out << "  " << rule << "\n";
    }
    out << "  - !<Rule> {name: Default, colorspace: default}\n";

    out << "\ndisplays:\n";
    if (displays.empty()) {
        out << "  {}\n";
    }
    for (auto const& [display, viewNames] : displays) {
        out << "  " << yamlQuote(display) << ":\n";
        if (viewNames.empty()) {
            out << "    []\n";
        }
        for (std::string const& view : viewNames) {
            out << "    - !<View> {name: " << yamlQuote(view) << ", colorspace: " << yamlQuote(first) << "}\n";
        }
    }
    out << "\nactive_displays: [" << activeDisplays << "]\n";
    out << "active_views: [" << activeViews << "]\n";

    if (!looks.empty()) {
        out << "\nlooks:\n";
        for (std::string const& look : looks) {
            out << "  - !<Look>\n    name: " << yamlQuote(look) << "\n    process_space: " << yamlQuote(first)
                << "\n    transform: !<ExponentTransform> {value: [1, 1, 1, 1]}\n";
        }
    }

    out << "\ncolorspaces:\n";
    for (std::string const& space : colorSpaces) {
        out << "  - !<ColorSpace>\n    name: " << yamlQuote(space) << "\n    family: \"\"\n    bitdepth: 32f\n";
        if (std::find(srgbSpaces.begin(), srgbSpaces.end(), space) != srgbSpaces.end()) {
            out << "    to_scene_reference: !<ExponentWithLinearTransform> "
                   "{gamma: 2.4, offset: 0.055}\n";
        }
    }
    return out.str();
}

} // namespace verra_test
