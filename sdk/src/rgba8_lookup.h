#pragma once
// A faster route for 8-bit RGBA conversions whose result is a table per
// channel.
//
// When a colour processor has no channel crosstalk, each output byte of an
// 8-bit conversion depends only on the input byte of the same channel, so
// the whole conversion is four tables of 256 bytes. The tables are taken
// from OpenImageIO's colorconvert itself, run on a ramp with the same
// processor, so applying them gives the bytes colorconvert would have
// written. Private to the module.

#include <orv/verra/pixel.h>

#include <OpenImageIO/color.h>

#include <cstddef>
#include <cstdint>

namespace orv::verra_sdk::detail {

class Rgba8Lookup {
public:
    /// Images smaller than this are converted directly: building the tables
    /// costs about as much as converting this many pixels.
    static constexpr std::size_t kMinPixels = 16384;

    /// Fills the tables from colorconvert on ramps converted with
    /// `processor`. False, leaving the caller to convert directly, when the
    /// processor has channel crosstalk, the ramp conversion fails, or the
    /// ramps show that an output byte depends on more than its own input
    /// byte. Never throws.
    bool build(OIIO::ColorProcessor const& processor) noexcept;

    /// Converts `count` pixels in place through the tables, on OpenImageIO's
    /// worker threads. Needs a successful `build`.
    void apply(verra::Rgba8* pixels, std::size_t count) const;

private:
    std::uint8_t m_table[4][256];
};

} // namespace orv::verra_sdk::detail
