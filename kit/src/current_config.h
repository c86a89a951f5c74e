#pragma once
// The OpenColorIO side of the configuration in use, for the toolkit's own
// units: what OpenImageIO's wrapper does not tell (missing files, aliases,
// roles, inactive spaces, views, file rules).

#include <verra_sdk/kit/config_load.h>

#include <OpenColorIO/OpenColorIO.h>

#include <string>

namespace orv::verra_sdk::kit::detail {

/// The configuration file in use as OpenColorIO read it at the latest
/// `loadConfig`; null when only the built-in colour spaces are in use or
/// OpenColorIO refused the file.
OCIO_NAMESPACE::ConstConfigRcPtr const& currentOcio();

/// Replaces what `currentOcio` returns (`loadConfig` only).
void setCurrentOcio(OCIO_NAMESPACE::ConstConfigRcPtr config);

/// The config's current context with `variables` set, as the environment
/// would set them; the current context itself when there are none.
OCIO_NAMESPACE::ConstContextRcPtr contextWith(OCIO_NAMESPACE::Config const& config, ContextVariables const& variables);

/// `text` with each line break turned into a blank, for one-line messages.
std::string oneLine(std::string text);

} // namespace orv::verra_sdk::kit::detail
