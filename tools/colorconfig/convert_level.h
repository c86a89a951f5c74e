#pragma once
// Converting the colour channels of one image between two colour spaces
// through the colour module, leaving every other channel as it is.

#include "image_file.h"

#include <orv/string.h>

#include <functional>
#include <string>

namespace colorconfig {

/// Converts `level` from the colour space `from` to `to` (both as the
/// colour-space list holds them):
/// - the colour channels are R, G and B by name, else the first three
///   channels that are neither alpha nor depth; a single such channel (grey)
///   is first spread over new R, G and B channels, so grey comes out as RGB;
/// - every other channel, alpha included, keeps its values;
/// - UINT8 pixels go through `ColorConfig::transform` on an RGBA8 image;
///   FLOAT pixels out of "linear" through `colorConfigTransformRgb`, others
///   through a processor of the shared configuration and `colorconvert`;
/// - the "oiio:ColorSpace" of `fileSpec` becomes `to`.
/// False, with the reason in `error`, when the conversion fails or the image
/// has no colour channels; the pixels are unspecified then.
bool convertLevel(ImageLevel& level, orv::String const& from, orv::String const& to, std::string& error);

/// An operation on packed FLOAT RGB or RGBA pixels, in place; false, with
/// the reason in its second argument, when it fails.
using PackedOperation = std::function<bool(OIIO::ImageBuf& pixels, std::string& error)>;

/// Applies `operation` to the colour channels (and alpha) of the FLOAT
/// `level`, found as `convertLevel` finds them (grey is spread first); every
/// other channel keeps its values. False, with the reason in `error`, when
/// the image has no colour channels or `operation` fails.
bool transformColorChannels(ImageLevel& level, PackedOperation const& operation, std::string& error);

/// A FLOAT copy of the colour channels of `level` (found as `convertLevel`
/// finds them; grey is spread in `level` itself) as packed RGB pixels in
/// `rgb`. False, with the reason in `error`, when there are none.
bool colorChannelsOf(ImageLevel& level, OIIO::ImageBuf& rgb, std::string& error);

/// Converts the packed FLOAT RGB or RGBA `pixels` in place from `from` to
/// `to`, as `convertLevel` converts FLOAT pixels.
bool convertPackedFloats(OIIO::ImageBuf& pixels, orv::String const& from, orv::String const& to,
                         std::string& error);

} // namespace colorconfig
