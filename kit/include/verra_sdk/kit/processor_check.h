#pragma once
// Why a conversion cannot be made, in OpenColorIO's words, before anything
// is converted: a missing or unreadable LUT file that the transform needs is
// named, which the module's "cannot convert" does not say. Only the files a
// transform needs matter: a configuration that names a missing file
// elsewhere still converts everything else.
//
// Not thread-safe (one thread at a time, as the module); never throws or
// prints. Builds the processor once (OpenColorIO caches it).

#include <string>

namespace orv::verra_sdk::kit {

/// OpenColorIO's reason, on one line, why the configuration of the latest
/// `loadConfig` cannot convert from the colour space `from` to `to` (names
/// as `resolveColorSpace` gives them: listed, inactive or built-in), such as
/// "The specified file reference 'x.spi1d' could not be located. ..." or a
/// LUT file's parse error. Empty when it can; without a configuration file;
/// and when a name is not one of the config's (a colour space, alias or
/// role), which is how the built-ins "sRGB" and "Rec709" are taken when the
/// config has no space of that name. "linear" stands for the scene_linear
/// role when the config has no such space. Use it before a conversion makes
/// an OpenImageIO processor: OpenImageIO may end the process on some of
/// OpenColorIO's reasons.
std::string conversionProblem(std::string const& from, std::string const& to);

} // namespace orv::verra_sdk::kit
