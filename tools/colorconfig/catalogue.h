#pragma once
// A snapshot of the module's catalogue, taken once for printing.

#include "config_names.h"
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
    /// `ColorConfig::colorSpaces()`; the first three are the built-ins.
    std::vector<std::string> colorSpaces;
    /// The config's inactive colour spaces: not listed, accepted by name.
    std::vector<std::string> inactive;
    /// The config's active colour spaces that the list hides.
    std::vector<HiddenName> hidden;
    /// `defaultDisplay()`; empty when the config has none.
    std::string defaultDisplay;
    /// `defaultView()`; empty when the config has none.
    std::string defaultView;
    /// Each display of `displays()`, in order, with its views from `views()`
    /// (an empty list for a display without views).
    std::vector<std::pair<std::string, std::vector<std::string>>> displays;
    /// `looks()`.
    std::vector<std::string> looks;
    /// `roles()`, each with the colour space the config gives it (empty when
    /// no configuration file is in use).
    std::vector<std::pair<std::string, std::string>> roles;
};

/// Each pair as "first  second" under "\n<title> (<count>)", indented by
/// two, the seconds lined up; "(none)" for no pairs.
std::string pairsText(std::string const& title, std::vector<std::pair<std::string, std::string>> const& pairs);

/// Each hidden name with its reason.
std::vector<std::pair<std::string, std::string>> hiddenPairs(std::vector<HiddenName> const& hidden);

/// Reads the catalogue of the configuration now loaded, `config`.
Catalogue readCatalogue(LoadedConfig const& config);

/// The catalogue as text for people, lines of at most 79 columns (a single
/// name longer than that keeps a line of its own).
std::string catalogueText(Catalogue const& catalogue);

/// The catalogue as a JSON object with the members "report", "configFile"
/// (empty with the built-in colour spaces), "errors" (the problems),
/// "colorSpaces" (names), "builtIns" (names), "inactiveColorSpaces" (names),
/// "hidden" (objects of "name" and "reason"), "defaultDisplay",
/// "defaultView", "displays" (objects of "name" and "views"), "looks"
/// (names) and "roles" (objects of "name" and "colorSpace").
std::string catalogueJson(Catalogue const& catalogue);

} // namespace colorconfig
