#pragma once
// Half-float pixel values to float and back, with the processor's own
// conversion instructions where it has them (F16C), giving the same bits as
// OpenImageIO's conversions (Imath's, rounding to nearest even; NaNs keep
// their payload as Imath keeps it). Used by the image files' reads and
// writes, where these conversions are a large part of the time per frame.

#include <cstddef>
#include <cstdint>

namespace orv::verra_sdk::kit::detail {

/// Rows of an image converted at once between half and float as a file is
/// read or written: a few OpenEXR chunks, small enough to stay in the cache.
constexpr int kBandRows = 64;

/// Converts `count` half values (their bits) at `halves` into `floats`.
void halfToFloat(std::uint16_t const* halves, float* floats, std::size_t count);

/// Converts `count` floats at `floats` into half values (their bits).
void floatToHalf(float const* floats, std::uint16_t* halves, std::size_t count);

} // namespace orv::verra_sdk::kit::detail
