#pragma once
// What is wrong with an OpenColorIO configuration file that OpenColorIO
// itself would only say later, at the first conversion that needs it.

#include <string>
#include <vector>

namespace colorconfig {

/// One line per problem of the configuration file `path`, as OpenColorIO
/// words it: its reason for refusing the file, or else one line per file
/// (LUT, CDL) that a colour space, look, view transform or named transform
/// refers to and that OpenColorIO cannot find on the config's search path.
/// Empty when OpenColorIO reads the file and finds every file it names.
/// Catches every OpenColorIO exception.
std::vector<std::string> configProblems(std::string const& path);

} // namespace colorconfig
