#pragma once
// Small OpenColorIO 2.1 configs written as YAML text by the tests.
//
// Colour spaces are built from OpenColorIO's built-in operators (no LUT
// files): a name listed in `srgbSpaces` gets the sRGB curve, every other
// name is an identity of the reference space.

#include <string>
#include <utility>
#include <vector>

namespace verra_test {

struct OcioConfigText {
    std::vector<std::string> colorSpaces{"lin", "raw"};
    std::vector<std::string> srgbSpaces;
    /// Display name and its views; each view shows the first colour space.
    std::vector<std::pair<std::string, std::vector<std::string>>> displays;
    /// Written as "active_displays: [...]" / "active_views: [...]" when set.
    std::string activeDisplays;
    std::string activeViews;
    std::vector<std::string> looks;
    /// Role and colour space; a "default" role naming the first colour space
    /// is added when absent (unless a colour space is itself named "default").
    std::vector<std::pair<std::string, std::string>> roles;
    /// Lines for a "file_rules:" section (each a "- !<Rule> {...}" entry);
    /// a Default rule naming the default role is appended.
    std::vector<std::string> fileRules;

    /// The YAML text.
    std::string str() const;
};

/// A YAML double-quoted scalar for `text`.
std::string yamlQuote(std::string const& text);

} // namespace verra_test
