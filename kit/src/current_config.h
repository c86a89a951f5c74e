#pragma once
// The OpenColorIO side of the configuration in use, for the toolkit's own
// units: what OpenImageIO's wrapper does not tell (missing files, aliases,
// roles, inactive spaces, views, file rules).

#include <OpenColorIO/OpenColorIO.h>

#include <string>

namespace orv::verra_sdk::kit::detail {

/// The configuration file in use as OpenColorIO read it at the latest
/// `loadConfig`; null when only the built-in colour spaces are in use or
/// OpenColorIO refused the file.
OCIO_NAMESPACE::ConstConfigRcPtr const& currentOcio();

/// Replaces what `currentOcio` returns (`loadConfig` only).
void setCurrentOcio(OCIO_NAMESPACE::ConstConfigRcPtr config);

/// `text` with each line break turned into a blank, for one-line messages.
std::string oneLine(std::string text);

} // namespace orv::verra_sdk::kit::detail
