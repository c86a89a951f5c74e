#pragma once
// Converting the pixels of a Raster between two colour spaces through the
// colour module.

#include "raster.h"

#include <orv/string.h>

namespace colorconfig {

/// Converts `raster` (1 to 4 channels) from the colour space `from` to `to`
/// (both as the colour-space list holds them) and leaves the result in it,
/// grey expanded to RGB (`expandedChannels`):
/// - 8-bit pixels go through `ColorConfig::transform` on an RGBA8 image;
/// - float pixels out of "linear" go through `colorConfigTransformRgb`,
///   on RGB or RGBA buffers;
/// - other float pixels go through a processor of the shared configuration
///   (`colorConfig()`) and `ImageBufAlgo::colorconvert`.
/// False, after an error line on standard error, when the conversion fails;
/// the raster's content is unspecified then.
bool convertRaster(Raster& raster, orv::String const& from, orv::String const& to);

} // namespace colorconfig
