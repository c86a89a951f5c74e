#pragma once
// A snapshot of what the configuration in use offers, copied out of the
// module's lists and OpenColorIO into plain strings, for showing or
// serialising.
//
// Not thread-safe (one thread at a time, as the module); never throws or
// prints. Costs a copy of every list, and one processor per built-in.

#include <verra_sdk/kit/config_load.h>
#include <verra_sdk/kit/names.h>

#include <string>
#include <vector>

namespace orv::verra_sdk::kit {

/// One display and its views.
struct DisplayViews {
    std::string display;
    /// Its views from `views()`, in order; empty for a display without any.
    std::vector<std::string> views;
};

/// What `colorconfig info` shows.
struct Catalogue {
    /// The status of the latest `loadConfig`: report, file, errors, warnings.
    ConfigStatus status;
    /// `ColorConfig::colorSpaces()`; the first three are the built-ins.
    std::vector<std::string> colorSpaces;
    /// The config's inactive colour spaces: not listed, accepted by name.
    std::vector<std::string> inactive;
    /// The config's active colour spaces that the list hides.
    std::vector<HiddenName> hidden;
    /// `defaultDisplay()` and `defaultView()`; empty when there are none.
    std::string defaultDisplay;
    std::string defaultView;
    /// Each display of `displays()`, in order.
    std::vector<DisplayViews> displays;
    /// `looks()`.
    std::vector<std::string> looks;
    /// `roles()`, each with the colour space the config gives it (empty with
    /// the built-ins alone).
    std::vector<RoleSpace> roles;
};

/// Reads the catalogue of the configuration of the latest `loadConfig`; its
/// status's missing files are those under `context` (see `configStatus`).
Catalogue readCatalogue(ContextVariables const& context = {});

} // namespace orv::verra_sdk::kit
