#pragma once
// Loading the configuration the user asked for, and telling when it is not
// the one in use: the module falls back on the next source or on the
// built-in colour spaces without a word, which a program or script must not.
//
// Example:
//
//     using namespace orv::verra_sdk;
//     kit::ConfigStatus const status = kit::loadConfig("");   // ocio.txt, $OCIO or built-ins
//     for (std::string const& error : status.errors) std::fprintf(stderr, "%s\n", error.c_str());
//
// Threading: as the module, one thread at a time; never beside another call
// of the module or of the toolkit. Failures are values; nothing is thrown or
// printed.

#include <verra_sdk/config_source.h>

#include <string>
#include <utility>
#include <vector>

namespace orv::verra_sdk::kit {

/// Context variables (`$SHOT` in a config's file paths): each name with its
/// value, set in this order for one run as the environment would set them.
using ContextVariables = std::vector<std::pair<std::string, std::string>>;

/// What `loadConfig` chose and what is wrong with it.
struct ConfigStatus {
    /// The report of `ColorConfig::loadOcioConfig`.
    std::string report;
    /// Where the configuration in use came from.
    ConfigSource source = ConfigSource::BuiltIns;
    /// The configuration file in use (canonical), or empty when only the
    /// built-in colour spaces are.
    std::string file;
    /// Why the configuration the user set is not the one in use, each saying
    /// where it was set, as one line:
    ///   "the config set by --config '<argument>' was not found"
    ///   "the config set by <ocio.txt path> ('<path it holds>') was not found"
    ///   "the config set by $OCIO ('<its value>') was not found"
    ///   "the config set by <any of the above> cannot be read: <reason>"
    /// (the last for a file that OpenColorIO refuses, with its reason). Only
    /// the first source that the user set is checked for "not found";
    /// discovery may then have gone on to a later one. Empty when all is
    /// well, and when the user set nothing and the built-ins are in use.
    std::vector<std::string> errors;
    /// Files (LUTs, CDLs) the configuration names and OpenColorIO cannot
    /// find, as OpenColorIO words it: only the transforms that need them fail.
    std::vector<std::string> warnings;

    /// True when a configuration file is in use.
    bool usesFile() const { return !file.empty(); }
};

/// Runs `ColorConfig::loadOcioConfig(requested)` (empty: ocio.txt, then
/// $OCIO, then the built-ins) and checks the result against what the user
/// set: `requested` (a path or NAME/$NAME/%NAME%) when not empty, else
/// ocio.txt when it exists, else $OCIO when it is set. A file in use that
/// OpenColorIO reads becomes OpenColorIO's current configuration and the one
/// the other toolkit functions ask (file rules, aliases, roles, views); a
/// refused file leaves the built-in colour spaces in use. A configuration
/// naming files that are missing is used all the same (they are `warnings`):
/// only the conversions that need them fail. Without a file in use,
/// OpenColorIO's current configuration becomes a raw one, so that no file
/// rule of an earlier configuration answers the module's guesses. Reads the
/// whole configuration: costs what OpenColorIO's parsing costs.
ConfigStatus loadConfig(std::string const& requested);

/// The status of the latest `loadConfig` (an empty one with the built-ins
/// before any).
ConfigStatus const& configStatus();

/// The same status with its `warnings` found again under the config's
/// context with `variables` set: which files are missing depends on them.
/// `configStatus()` itself when `variables` is empty or no file is in use.
/// Costs a walk over the config's transforms.
ConfigStatus configStatus(ContextVariables const& variables);

} // namespace orv::verra_sdk::kit
