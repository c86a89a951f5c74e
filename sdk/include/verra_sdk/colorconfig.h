#pragma once
// The colour-configuration module: one OpenColorIO configuration per
// process, its catalogue, and conversions of colours, images and buffers.
//
// Example:
//
//     using namespace orv::verra_sdk;
//     orv::String report = ColorConfig::loadOcioConfig("");   // ocio.txt, $OCIO or built-ins
//     for (orv::String const& name : ColorConfig::colorSpaces())
//         std::printf("%s\n", name.buf());                     // "linear", "sRGB", "Rec709", ...
//     orv::String space = ColorConfig::findColorSpace(" SRGB ");  // "sRGB"
//     orv::math::RgbaT<double> c{0.5, 0.5, 0.5, 1.0};
//     c = ColorConfig::linearToColorSpace(c, space);           // built-in sRGB curve
//     Image image = Image::create(64, 64);
//     bool ok = ColorConfig::colorSpaceToLinear(image, ColorConfig::parseColorSpace("tex.png", true));
//
// Threading: the module keeps static state without locks. Call it from one
// thread at a time, and never run `ColorConfig::loadOcioConfig` beside any
// other call. Failures are values (empty results, `false`, a report) and at
// most one line through `orv::logError`; the module throws nothing of its own.

#include <orv/ds/hash_map.h>
#include <orv/math/rgba.h>
#include <orv/string.h>
#include <orv/string_vector.h>
#include <orv/verra/pixel.h>
#include <orv/verra/vector2d.h>
#include <orv/verra_sdk/image.h>

#include <OpenImageIO/color.h>

namespace orv::verra_sdk {

/// The catalogue and conversions of the shared configuration.
class ColorConfig {
public:
    ColorConfig() = delete;

    /// Chooses the configuration file, in this order: `path` as a file;
    /// `path` as the name of an environment variable (NAME, $NAME or %NAME%)
    /// holding one; the path written in "ocio.txt" in the user's product
    /// directory; the `OCIO` variable; else the built-in colour spaces. Resets
    /// the shared configuration to the winner, refills every cache, and
    /// returns a one-line report (never empty) of what it chose; the report
    /// names the chosen file even when OpenImageIO then refuses it. The only
    /// log line is "OIIO failed to reset OCIO: %s", when a refusal leaves
    /// OpenImageIO's global error text set (the reason itself stays in
    /// `colorConfig().geterror()`).
    static String loadOcioConfig(String path);

    /// "linear", "sRGB", "Rec709", then the configuration's colour spaces in
    /// its order, without names equal apart from case to an earlier one and
    /// without "default", "rgb" and "RGB". An independent copy of a cache
    /// filled on first use.
    static StringVector colorSpaces();
    /// The listed form of `name` (compared trimmed and without regard to
    /// case), or the empty String when nothing matches.
    static String findColorSpace(String name);
    /// The colour space of the file `fileName`, from OpenColorIO's file rules
    /// of its current configuration, then a colour-space name found in the
    /// text, then (when `fallback` is true) "sRGB" for png, jpg, tga and bmp
    /// files and "linear" for all others; empty when nothing was found and
    /// `fallback` is false.
    static String parseColorSpace(String fileName, bool fallback);

    /// `color` converted from the space `from` to the space `to` (names
    /// compared without regard to case). "linear" to and from "sRGB" or
    /// "Rec709" use built-in single-precision curves; other pairs use a
    /// processor of the shared configuration. Alpha is returned unchanged;
    /// an impossible conversion returns the colour unchanged, silently.
    static math::RgbaT<double> transform(math::RgbaT<double> color, String from, String to);
    /// `transform(color, from, "linear")`.
    static math::RgbaT<double> colorSpaceToLinear(math::RgbaT<double> color, String from);
    /// `transform(color, "linear", to)`.
    static math::RgbaT<double> linearToColorSpace(math::RgbaT<double> color, String to);

    /// Converts `image`'s pixels in place from `from` to `to` through the
    /// shared configuration (names compared exactly; an empty name means
    /// "sRGB"). True when the pixels hold the target space; false, with one
    /// error line, when no processor exists or the conversion fails; false,
    /// silently, for an invalid image.
    static bool transform(Image image, String from, String to);
    /// `transform(image, from, "linear")`.
    static bool colorSpaceToLinear(Image image, String from);
    /// `transform(image, "linear", to)`.
    static bool linearToColorSpace(Image image, String to);
};

/// The shared OpenImageIO configuration, for hosts that need it directly.
/// Lives until process exit; `ColorConfig::loadOcioConfig` re-points it.
OIIO::ColorConfig& colorConfig();

/// The configuration's display names, in order, without empty names or
/// exact repeats. An independent copy of a cache filled on first use.
StringVector displays();
/// The configuration's look names, as `displays()`.
StringVector looks();
/// The configuration's role names, as `displays()`.
StringVector roles();
/// The configuration's default display, or the empty String.
String defaultDisplay();
/// The default view of the default display, or the empty String.
String defaultView();
/// Each display (as listed by `displays()`) that has views, mapped to its
/// view names in order. A copy of the cache whose lists are the cache's own
/// lists: do not change them. Empty until `displays()` has been called.
ds::HashMap<String, StringVector> views();

/// Converts the float RGB `source` out of "linear" into the space `to`
/// (empty means "sRGB") as opaque RGBA8 into `destination`, which is given
/// storage of the source's size when it has none. False, silently, when a
/// size is zero or the sizes differ; false with one error line when no
/// processor exists or the conversion fails. Alpha bytes are 255 whenever
/// the sizes were accepted.
bool colorConfigGenerateRgba8(verra::Vector2d<verra::float3, true> const& source,
                              verra::Vector2d<verra::Rgba8, true>& destination, String to);
/// Converts the float RGB `source` out of "linear" into `to` (empty means
/// "sRGB"), writing `destination`, which must already have the same size.
/// Failures as `colorConfigGenerateRgba8`.
bool colorConfigTransformRgb(verra::Vector2d<verra::float3, true> const& source,
                             verra::Vector2d<verra::float3, true>& destination, String to);
/// Converts the float RGBA `pixels` in place out of "linear" into `to`
/// (empty means "sRGB"); all four channels go through the processor.
bool colorConfigTransformRgb(verra::Vector2d<verra::float4, true>& pixels, String to);

} // namespace orv::verra_sdk
