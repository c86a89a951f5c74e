#pragma once
// A faster route from float RGB to RGBA8 whose bytes are the direct route's.
//
// When a colour processor has no channel crosstalk, each output byte of a
// channel is a step function of that channel's float input. Where that
// function never decreases, it is fixed by 255 thresholds: the first float,
// in the order of float values, at which each byte is reached. They are found
// by bisection over the ordered float bit patterns, asking the direct route
// itself (the same processor and OpenImageIO's own float-to-byte conversion),
// so applying them gives the bytes the direct route would have written.
// A table indexed by the high 17 bits of a value's ordered bit pattern gives
// the byte at the start of its bucket of 32,768 floats; one comparison with
// the next threshold finishes the lookup (more where a bucket holds several
// steps, which smooth curves do not). The tables are 128 KiB a channel (one
// for all, when the channels share their steps), the thresholds 1 KiB. NaNs
// take the byte the direct route gives them. Private to the module.

#include <orv/verra/pixel.h>

#include <OpenImageIO/color.h>

#include <cstddef>
#include <cstdint>
#include <functional>
#include <vector>

namespace orv::verra_sdk::detail {

/// The direct route on one row of `count` pixels: their bytes, alpha
/// untouched; false when it fails.
using Rgba8Route = std::function<bool(verra::float3 const* source, verra::Rgba8* destination, std::uint32_t count)>;

class FloatRgba8Lookup {
public:
    FloatRgba8Lookup() = default;
    FloatRgba8Lookup(FloatRgba8Lookup const&) = delete; // the table pointers point into the object
    FloatRgba8Lookup& operator=(FloatRgba8Lookup const&) = delete;

    /// Buffers smaller than this take the direct route: building the tables
    /// (about 10 ms on one core) then costs less than half of converting one
    /// such buffer directly, so no call is slower than before, and every
    /// later call with the same processor is several times faster.
    static constexpr std::size_t kMinPixels = std::size_t{1} << 20;
    /// A bucket is the floats whose ordered keys share all but their low 15 bits.
    static constexpr int kBucketShift = 15;

    /// Finds the thresholds of each channel through `direct`, then checks the
    /// tables against it on every bucket's first value, each threshold ±2
    /// units in the last place, the special values and random bit patterns,
    /// with different values in the channels of each pixel. False, leaving
    /// the caller to the direct route, on crosstalk, a failed call, any
    /// disagreement or an allocation failure. Never throws.
    bool build(OIIO::ColorProcessor const& processor, Rgba8Route const& direct) noexcept;

    /// Converts `count` pixels from `source` into `destination` through the
    /// tables, alpha set to 255, on OpenImageIO's worker threads. Needs a
    /// successful `build`.
    void apply(verra::float3 const* source, verra::Rgba8* destination, std::size_t count) const;

    /// The first float of each byte step of each channel, for tests to probe
    /// around. Needs a successful `build`.
    std::vector<float> thresholds() const;

private:
    /// One channel's step function.
    struct Channel {
        std::uint8_t nan = 0; ///< the byte of every NaN
        std::uint8_t lowest = 0; ///< the byte of -infinity
        std::uint8_t highest = 0; ///< the byte of +infinity
        /// threshold[v]: the first ordered key whose byte is at least v, for
        /// lowest < v <= highest; above highest, a key no value reaches.
        std::uint32_t threshold[257] = {};
    };

    /// The byte of `channel` at the ordered key of a value that is not NaN,
    /// from its thresholds alone.
    static std::uint8_t keyByte(Channel const& channel, std::uint32_t key);
    /// `apply` on one range; kSeveralSteps when a bucket may hold more than one step.
    template <bool kSeveralSteps>
    void convertPixels(verra::float3 const* source, verra::Rgba8* destination, std::size_t count) const;
    /// True when `direct` gives, for each pixel of `pixels`, the tables' bytes.
    bool agrees(std::vector<verra::float3> const& pixels, Rgba8Route const& direct) const;

    Channel m_channels[3];
    std::vector<std::uint8_t> m_starts[3]; ///< the byte at each bucket's first key; empty when shared
    std::uint8_t const* m_start[3] = {}; ///< each channel's table, its own or channel 0's
    int m_maxSteps = 0; ///< the most thresholds inside one bucket
};

} // namespace orv::verra_sdk::detail
