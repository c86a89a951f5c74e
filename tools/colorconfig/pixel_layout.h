#pragma once
// Moving pixels between a Raster's interleaved channels and the module's
// pixel types. Channels are copied, spread or dropped; values never change.

#include "raster.h"

#include <orv/verra/pixel.h>
#include <orv/verra/vector2d.h>
#include <orv/verra_sdk/image.h>

namespace colorconfig {

/// The channel count of a converted image: grey (1) becomes RGB (3), grey
/// and alpha (2) becomes RGBA (4); 3 and 4 stay.
int expandedChannels(int channels);

/// A new RGBA8 image holding the byte raster `raster` of 1 to 4 channels:
/// grey spread over R, G and B, alpha 255 where the raster has none. Invalid
/// when memory runs out.
orv::verra_sdk::Image toImage(Raster const& raster);

/// The first `channels` (3 or 4) channels of `image`'s pixels, interleaved.
std::vector<std::uint8_t> fromImage(orv::verra_sdk::Image const& image, int channels);

/// The float raster `raster` (any channel count) as RGB: grey spread over
/// R, G and B, channels past the third dropped. Empty when memory runs out.
orv::verra::Vector2d<orv::verra::float3, true> toFloat3(Raster const& raster);

/// The float raster `raster` of 2 or 4 channels as RGBA, grey spread over R,
/// G and B. Empty when memory runs out.
orv::verra::Vector2d<orv::verra::float4, true> toFloat4(Raster const& raster);

/// The pixels of `pixels`, interleaved.
std::vector<float> fromFloat3(orv::verra::Vector2d<orv::verra::float3, true> const& pixels);
/// The pixels of `pixels`, interleaved.
std::vector<float> fromFloat4(orv::verra::Vector2d<orv::verra::float4, true> const& pixels);

/// The float raster `raster` of 1 to 4 channels, with grey spread over R, G
/// and B (`expandedChannels`), interleaved.
std::vector<float> expandedFloats(Raster const& raster);

} // namespace colorconfig
