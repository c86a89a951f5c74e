#pragma once
// A snapshot of the module's catalogue, taken once for printing.

#include "session.h"

#include <string>
#include <utility>
#include <vector>

namespace colorconfig {

/// What `info` shows, copied out of the module's lists into plain strings.
struct Catalogue {
    /// The report of `ColorConfig::loadOcioConfig`.
    std::string report;
    /// The configuration file in use, or empty when the built-in colour
    /// spaces are.
    std::string configFile;
    /// Why the configuration asked for is not what is in use (`LoadedConfig`).
    std::vector<std::string> problems;
    /// `ColorConfig::colorSpaces()`.
    std::vector<std::string> colorSpaces;
    /// `defaultDisplay()`; empty when the config has none.
    std::string defaultDisplay;
    /// `defaultView()`; empty when the config has none.
    std::string defaultView;
    /// Each display of `displays()`, in order, with its views from `views()`
    /// (an empty list for a display without views).
    std::vector<std::pair<std::string, std::vector<std::string>>> displays;
    /// `looks()`.
    std::vector<std::string> looks;
    /// `roles()`: the role names.
    std::vector<std::string> roles;
};

/// Reads the catalogue of the configuration now loaded, `config`.
Catalogue readCatalogue(LoadedConfig const& config);

/// The catalogue as text for people, lines of at most 79 columns (a single
/// name longer than that keeps a line of its own).
std::string catalogueText(Catalogue const& catalogue);

/// The catalogue as a JSON object with the members "report", "configFile"
/// (empty with the built-in colour spaces), "errors" (the problems),
/// "colorSpaces",
/// "defaultDisplay", "defaultView", "displays" (objects of "name" and
/// "views"), "looks" and "roles".
std::string catalogueJson(Catalogue const& catalogue);

} // namespace colorconfig
