#pragma once
// What works and what is broken in the configuration in use: everything
// OpenColorIO would otherwise say only at the first conversion that needs it.
//
// Not thread-safe (one thread at a time, as the module); never throws or
// prints. Builds a processor for every colour space, view and look: costs
// what OpenColorIO's processor building costs (LUT files are read).

#include <verra_sdk/kit/config_load.h>
#include <verra_sdk/kit/file_guess.h>
#include <verra_sdk/kit/names.h>

#include <string>
#include <vector>

namespace orv::verra_sdk::kit {

/// Something of the configuration that does not work, and why.
struct Failure {
    /// What fails: a colour space, "display / view", or a look.
    std::string what;
    /// OpenColorIO's reason.
    std::string reason;
};

/// A typical file name and what the configuration guesses for it.
struct FileNameGuess {
    std::string file;
    FileGuess guess;
};

/// Everything `checkConfig` finds.
struct CheckReport {
    /// The status of the latest `loadConfig`; its `warnings` are the
    /// missing files, each an error here.
    ConfigStatus status;
    /// True when OpenColorIO read the file; nothing below is known otherwise.
    bool read = false;
    /// OpenColorIO's reason when its own validation fails.
    std::string validation;
    /// Colour spaces (active and inactive), display / view pairs (every
    /// display and every view, active or not) and looks whose processor
    /// OpenColorIO cannot build. A view is tried from a colour space that
    /// goes through all its transforms: scene-linear, else the first in the
    /// config's order that is neither the view's own colour space nor data
    /// nor itself failing (a view without such a source is counted, not
    /// tried).
    std::vector<Failure> colorSpaces;
    std::vector<Failure> views;
    std::vector<Failure> looks;
    /// How many of each were tried.
    int colorSpaceCount = 0;
    int viewCount = 0;
    int lookCount = 0;
    std::vector<HiddenName> hidden;
    std::vector<RoleSpace> roles;
    /// What the configuration gives a few typical file names.
    std::vector<FileNameGuess> fileNames;
    std::string defaultDisplay;
    std::string defaultView;

    /// True when anything above is broken (hidden names are not).
    bool broken() const;
};

/// Checks the configuration of the latest `loadConfig`, its processors and
/// files under its context with `context` set, as the environment would set
/// them (a `$SHOT` decides which LUT files a config needs).
CheckReport checkConfig(ContextVariables const& context = {});

} // namespace orv::verra_sdk::kit
