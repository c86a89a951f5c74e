#pragma once
// Baking a LUT file of a conversion, with looks, or of a display/view, for
// an application or a device that cannot read the configuration: written
// by OpenColorIO's Baker in any format it writes, then read back through
// OpenColorIO and measured against the exact transform.
//
// Example:
//
//     kit::LutBake bake;
//     bake.from = "ACEScg";
//     bake.display = "sRGB - Display";          // its default view
//     bake.shaper = "ACEScct";                  // HDR input through a log shaper
//     kit::BakeReport report;
//     if (!kit::bakeLut(bake, "show.csp", report, error)) std::fprintf(stderr, "%s\n", error.c_str());
//
// Not thread-safe (one thread at a time, as the module); never throws or
// prints.

#include <verra_sdk/kit/color_transform.h>

#include <cstddef>
#include <string>
#include <vector>

namespace orv::verra_sdk::kit {

/// A LUT format of OpenColorIO's Baker.
struct LutFormat {
    /// The Baker's name of it ("resolve_cube", "Academy/ASC Common LUT Format").
    std::string name;
    /// Its file extension, without the dot ("cube", "clf").
    std::string extension;
};

/// Every format the Baker writes, in its order; several may share an
/// extension (cube, 3dl). Cheap.
std::vector<LutFormat> lutFormats();

/// Every format of `lutFormats` as "name (.extension)", joined by ", ".
std::string lutFormatNames();

/// What to bake: from `from` either to the colour space `to`, or (with `to`
/// empty) through the display `display` and its view `view` (empty: the
/// config's defaults), with `looks` in both cases. Colour spaces are names
/// as the user typed them (`resolveColorSpace`).
struct LutBake {
    std::string from = {};
    std::string to = {};
    std::string display = {};
    std::string view = {};
    /// Looks as OpenColorIO takes them ("a, +b, -c"): between `from` and
    /// `to`, or in place of the view's own.
    std::string looks = {};
    /// A colour space whose [0, 1] range the LUT's input covers through a 1D
    /// shaper (a log space for scene-linear HDR input); empty for none: the
    /// input is then taken as [0, 1] itself.
    std::string shaper = {};
    /// The cube's size along each axis; 0 for the format's own.
    int size = 0;
    /// A format name of `lutFormats` (apart from case); empty to take the
    /// first one with the output's extension.
    std::string format = {};
    ContextVariables context = {};
};

/// How a bake went.
struct BakeReport {
    /// The format written.
    std::string format;
    /// The largest difference in any colour channel between the baked file,
    /// applied by OpenColorIO's FileTransform, and the exact processor, over
    /// `samples` input colours spread over the range the LUT covers.
    double largestError = 0.0;
    std::size_t samples = 0;
    /// Why the file was not measured, when OpenColorIO cannot read back what
    /// its Baker wrote (a Houdini LUT holding a cube); empty when it was.
    std::string unmeasured;
};

/// Bakes `request` into the LUT file `output` through OpenColorIO's Baker on
/// an in-memory copy of the configuration of the latest `loadConfig`, to
/// which the transform (display/view and looks included, its context
/// variables resolved) is added as a colour space, then measures the file
/// (`BakeReport`). The file is written beside `output` and renamed into
/// place (`writeTextFile`). False, with `output` left as it was and a
/// message in `error`: a format the Baker lacks (with the formats it has),
/// an unknown colour space, display, view or look (with the valid choices),
/// no configuration file, OpenColorIO's reason when the transform or the
/// bake fails, or why the file cannot be written. Costs the
/// bake and about 30,000 colours through two processors.
bool bakeLut(LutBake const& request, std::string const& output, BakeReport& report, std::string& error);

} // namespace orv::verra_sdk::kit
