#pragma once
// Colour-space names given on the command line.

#include "config_names.h"

#include <orv/string.h>

#include <string>
#include <vector>

namespace colorconfig {

/// `name` resolved as `resolveName` resolves it under `config` (the
/// configuration file in use, or null), or the empty String after printing
/// an error that names the closest names.
orv::String resolveColorSpace(std::string const& name, OCIO_NAMESPACE::ConstConfigRcPtr const& config);

/// Up to three names that resemble `name`: listed names, the config's
/// inactive spaces, and the built-ins only when they convert under the
/// configuration.
std::vector<std::string> closestColorSpaces(std::string const& name, OCIO_NAMESPACE::ConstConfigRcPtr const& config);

/// Prints "unknown colour space '<name>'" and the closest names on standard
/// error (`closestColorSpaces`).
void reportUnknownColorSpace(std::string const& name, OCIO_NAMESPACE::ConstConfigRcPtr const& config);

} // namespace colorconfig
