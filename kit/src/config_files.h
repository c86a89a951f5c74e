#pragma once
// The files (LUTs, CDLs) an OpenColorIO configuration names and cannot find.

#include <OpenColorIO/OpenColorIO.h>

#include <string>
#include <vector>

namespace orv::verra_sdk::kit::detail {

/// One line per file that a colour space (active or not), look, view
/// transform or named transform of `config` refers to and that OpenColorIO
/// cannot find on the config's search path under `context`, as OpenColorIO
/// words it, each file once. Catches every OpenColorIO exception.
std::vector<std::string> missingFiles(OCIO_NAMESPACE::Config const& config,
                                      OCIO_NAMESPACE::ConstContextRcPtr const& context);

} // namespace orv::verra_sdk::kit::detail
