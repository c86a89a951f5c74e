#pragma once
// Faster routes of the float pixel buffers, each taken only where it gives
// the bits of the direct route (OpenImageIO's colorconvert on the caller's
// buffers), and what the module learned of each processor, kept with it.
//
// The module is single-threaded: the cache of the latest processors has no
// lock. Entries hold their processor, so its address names it for as long as
// the entry lives. Private to the module.

#include "float_rgba8_lookup.h"

#include <OpenImageIO/color.h>

#include <cstdint>

namespace orv::verra_sdk::detail {

/// The direct route of float RGB into RGBA8: colorconvert of the three colour
/// channels of `height` rows of `width` pixels. Over all four, OpenImageIO
/// would read a fourth float per pixel from the three-channel source, past
/// the end of the caller's buffer at the last pixel. Alpha is left as it is.
/// False on failure, whose text is dropped.
bool directRgba8(OIIO::ColorProcessorHandle const& processor, verra::float3 const* source, verra::Rgba8* destination,
                 std::uint32_t width, std::uint32_t height);

/// The float-to-byte tables of `processor`, built on its first use; null
/// when it has none or building them failed, allocation included.
FloatRgba8Lookup const* floatRgba8Lookup(OIIO::ColorProcessorHandle const& processor);

/// Whether `applyInPlace` with `processor` gives the bits of colorconvert
/// on packed pixels of `channels` (3 or 4) floats, as checked once per
/// processor on probe pixels: special values and random bit patterns.
bool appliesLikeColorconvert(OIIO::ColorProcessorHandle const& processor, int channels);

/// Applies `processor` to `height` rows of `width` packed pixels of
/// `channels` floats at `data`, in chunks of rows on OpenImageIO's worker
/// threads; each chunk is first copied from `source` unless it is null.
void applyInPlace(OIIO::ColorProcessor const& processor, float const* source, float* data, std::uint32_t width,
                  std::uint32_t height, int channels);

} // namespace orv::verra_sdk::detail
