#pragma once
// Colour transforms beyond a conversion between two colour spaces: looks
// applied between them, as OpenColorIO's LookTransform applies them; a LUT
// file that OpenColorIO reads, forward or inverted; and context variables
// (`$SHOT` in a config's file paths) set for one run as the environment
// would set them. Names are checked against the configuration first, with
// the valid choices in the message; then the transform applies to float
// pixels, or to one colour with the route it took.
//
// Example:
//
//     kit::ColorTransform grade{"ACEScg", "ACEScct", "shot_grade", "", false, {{"SHOT", "sh010"}}};
//     if (kit::chooseColorTransform(grade, error)) kit::applyColorTransform(grade, pixels, error);
//
// Not thread-safe (one thread at a time, as the module); never throws or
// prints. Each check builds the processor once (OpenColorIO caches it).

#include <verra_sdk/color_route.h>
#include <verra_sdk/kit/config_load.h>

#include <orv/math/rgba.h>

#include <OpenImageIO/imagebuf.h>

#include <string>
#include <utility>
#include <vector>

namespace orv::verra_sdk::kit {

/// "NAME=VALUE" split at its first "="; false, leaving `variable` as it was,
/// when there is no "=" or nothing before it.
bool parseContextVariable(std::string const& word, std::pair<std::string, std::string>& variable);

/// One transform: either from `from` to `to` with `looks` between them, or
/// the LUT file `lutFile` alone (then `from`, `to` and `looks` are empty).
struct ColorTransform {
    /// Colour spaces, as the colour-space list or the config names them.
    std::string from = {};
    std::string to = {};
    /// Looks as OpenColorIO takes them ("a, +b, -c"), applied in each look's
    /// process space between `from` and `to`; empty for none.
    std::string looks = {};
    /// A LUT file in any format OpenColorIO reads; relative to the current
    /// folder.
    std::string lutFile = {};
    /// True to apply the LUT file inverted.
    bool invert = false;
    ContextVariables context = {};
    /// The colour space of the result, for the output's "oiio:ColorSpace"
    /// (`to`); empty after a LUT file, whose result is not a named space.
    /// Set by `chooseColorTransform`.
    std::string result = {};

    /// True for a plain conversion from `from` to `to`: no looks, LUT file
    /// or context variables. The module converts it, with its built-in
    /// colour spaces and its 8-bit route.
    bool plain() const { return looks.empty() && lutFile.empty() && context.empty(); }
};

/// Checks `transform` against the configuration of the latest `loadConfig`
/// and builds its processor once with OpenColorIO. The colour spaces are
/// names as the user typed them, resolved as `resolveColorSpace` resolves
/// them; a plain conversion keeps the module's names and is checked as
/// `conversionProblem` checks it; otherwise names become the config's
/// spelling ("linear" stands for the scene_linear role when the config has
/// no such space), looks the config's, and the LUT file an absolute path (a
/// LUT file needs no configuration file). False, with `transform`
/// unspecified and a message in `error`: an unknown colour space
/// (`unknownColorSpaceText`) or look (with the config's looks), a built-in
/// colour space the config lacks, or OpenColorIO's reason when the
/// processor cannot be built (a LUT file it cannot read, a transform that
/// cannot be inverted, a file a context variable names that is missing).
bool chooseColorTransform(ColorTransform& transform, std::string& error);

/// Applies `transform` (checked by `chooseColorTransform`, not plain) to
/// the FLOAT RGB or RGBA `pixels` in place through OpenColorIO's CPU
/// processor: the three colour channels, rows split across OpenImageIO's
/// thread pool; alpha is left exactly as it was. False, with the reason in
/// `error`, for other pixel types or channel counts, or when OpenColorIO
/// fails.
bool applyColorTransform(ColorTransform const& transform, OIIO::ImageBuf& pixels, std::string& error);

/// Converts one colour in place by `transform`, once `chooseColorTransform`
/// has checked it (and resolved the names in `transform`); alpha is passed
/// through. A plain conversion takes the route `colorRoute` gives (`route`)
/// through `ColorConfig::transform`, its built-in curves in double
/// precision; any other takes OpenColorIO's processor in single precision,
/// as for pixels (`route` is `Processor`). False, with `color` as it was and
/// a message in `error`: the check's, "cannot convert from 'A' to 'B' with
/// this config" when the module has no route (a built-in colour space the
/// config cannot convert), or OpenColorIO's reason.
bool convertColor(ColorTransform& transform, math::RgbaT<double>& color, ColorRoute& route, std::string& error);

} // namespace orv::verra_sdk::kit
