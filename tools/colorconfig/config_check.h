#pragma once
// What is wrong with an OpenColorIO configuration file that OpenColorIO
// itself would only say later, at the first conversion that needs it.

#include "config_names.h"
#include "session.h"

#include <OpenColorIO/OpenColorIO.h>

#include <string>
#include <utility>
#include <vector>

namespace colorconfig {

/// One line per file (LUT, CDL) that a colour space (active or not), look,
/// view transform or named transform of `config` refers to and that
/// OpenColorIO cannot find on the config's search path, as OpenColorIO words
/// it. Empty when every file is found. Catches every OpenColorIO exception.
std::vector<std::string> missingFiles(OCIO_NAMESPACE::ConstConfigRcPtr const& config);

/// Something of the configuration that does not work, and why.
struct Failure {
    /// What fails: a colour space, "display / view", or a look.
    std::string what;
    std::string reason;
};

/// Everything `check` reports of the configuration in use.
struct CheckReport {
    /// The file in use; empty when the built-in colour spaces are.
    std::string configFile;
    /// Why the configuration asked for is not in use, OpenColorIO's reason
    /// for refusing it, or the missing files (`LoadedConfig::problems`).
    std::vector<std::string> problems;
    /// True when OpenColorIO read the file; nothing below is known otherwise.
    bool read = false;
    /// OpenColorIO's reason when its own validation fails.
    std::string validation;
    /// Colour spaces (active ones), display / view pairs (active ones) and
    /// looks whose processor OpenColorIO cannot build.
    std::vector<Failure> colorSpaces;
    std::vector<Failure> views;
    std::vector<Failure> looks;
    /// How many of each were tried.
    int colorSpaceCount = 0;
    int viewCount = 0;
    int lookCount = 0;
    std::vector<HiddenName> hidden;
    std::vector<std::pair<std::string, std::string>> roles;
    /// Typical file names with the colour space and rule that the file
    /// rules give them.
    struct Guess {
        std::string file;
        std::string colorSpace;
        std::string rule;
    };
    std::vector<Guess> fileRules;
    std::string defaultDisplay;
    std::string defaultView;

    /// True when anything above is broken (hidden names are not).
    bool broken() const;
};

/// Checks the configuration `loaded` (as `loadConfiguration` gave it).
CheckReport checkConfig(LoadedConfig const& loaded);

} // namespace colorconfig
