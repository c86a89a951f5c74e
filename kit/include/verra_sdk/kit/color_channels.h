#pragma once
// Converting the colour channels of one image between two colour spaces
// through the colour module, leaving every other channel as it is.
//
// Threading: one thread at a time, as the module's conversions. Cost: one
// pass over the pixels, plus a packed copy of the colour channels when they
// are not packed RGB(A) and a FLOAT copy of 8-bit associated images.
// Failures are values; nothing is thrown or printed (the module logs).

#include <verra_sdk/kit/image_file.h>

#include <orv/string.h>

#include <functional>
#include <string>

namespace orv::verra_sdk::kit {

/// Converts `level` from the colour space `from` to `to` (both as the
/// colour-space list holds them):
/// - the colour channels are R, G and B by name, else the first three
///   channels that are neither alpha nor depth; a single such channel (grey)
///   is first spread over new R, G and B channels, so grey comes out as RGB;
/// - every other channel, alpha included, keeps its values;
/// - colour multiplied by alpha (`level.associatedAlpha`) is divided by it,
///   converted and multiplied again (the colour of pixels whose alpha is 0
///   is converted as it is); other colour is converted directly;
/// - UINT8 pixels go through `ColorConfig::transform` on an RGBA8 image,
///   unless their alpha is associated: they become FLOAT then; FLOAT pixels
///   out of "linear" through `colorConfigTransformRgb`, others through a
///   processor of the shared configuration and `colorconvert`;
/// - the "oiio:ColorSpace" of `fileSpec` becomes `to`.
/// False, with the reason in `error`, when the conversion fails or the image
/// has no colour channels; the pixels are unspecified then.
bool convertLevel(ImageLevel& level, orv::String const& from, orv::String const& to, std::string& error);

/// An operation on packed FLOAT RGB or RGBA pixels, in place; false, with
/// the reason in its second argument, when it fails.
using PackedOperation = std::function<bool(OIIO::ImageBuf& pixels, std::string& error)>;

/// Applies `operation` to the colour channels (and alpha) of the FLOAT
/// `level`, found as `convertLevel` finds them (grey is spread first), on
/// straight colour as `convertLevel` converts it; every other channel keeps
/// its values. Packed RGB or RGBA levels (R, G, B and alpha first, nothing
/// else) are handed to `operation` themselves, others as a packed copy. False,
/// with the reason in `error`, when the image has no colour channels or
/// `operation` fails; the pixels are unspecified then.
bool transformColorChannels(ImageLevel& level, PackedOperation const& operation, std::string& error);

/// A FLOAT copy of the colour channels of `level` (found as `convertLevel`
/// finds them; grey is spread in `level` itself) as packed RGB pixels in
/// `rgb`, values as `level` holds them (associated or not). False, with the
/// reason in `error`, when there are none.
bool colorChannelsOf(ImageLevel& level, OIIO::ImageBuf& rgb, std::string& error);

/// Converts the packed FLOAT RGB or RGBA `pixels` in place from `from` to
/// `to`, as `convertLevel` converts FLOAT pixels whose colour is straight.
bool convertPackedFloats(OIIO::ImageBuf& pixels, orv::String const& from, orv::String const& to, std::string& error);

} // namespace orv::verra_sdk::kit
