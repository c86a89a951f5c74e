#pragma once
// Colour-space names given on the command line.

#include <orv/string.h>

#include <string>

namespace colorconfig {

/// The listed form of the colour space `name` (`ColorConfig::findColorSpace`),
/// or the empty String after printing an error that names the closest
/// listed names.
orv::String resolveColorSpace(std::string const& name);

/// Prints "unknown colour space '<name>'" and the closest listed names on
/// standard error.
void reportUnknownColorSpace(std::string const& name);

} // namespace colorconfig
