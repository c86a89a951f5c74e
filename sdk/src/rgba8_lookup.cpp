#include "rgba8_lookup.h"

#include <OpenImageIO/imagebuf.h>
#include <OpenImageIO/imagebufalgo.h>
#include <OpenImageIO/parallel.h>

#include <vector>

namespace orv::verra_sdk::detail {

namespace {

constexpr int kRampRows = 4;

/// Byte of channel `c` at ramp position `i` of row `row`: row 0 gives every
/// channel the same value; the other rows shift each channel by a different
/// amount, so every byte meets other bytes in the other channels and other
/// positions within a scanline.
std::uint8_t rampValue(int row, int i, int c)
{
    return static_cast<std::uint8_t>((i + row * 67 * (c + 1)) & 0xFF);
}

} // namespace

bool Rgba8Lookup::build(OIIO::ColorProcessor const& processor) noexcept
{
    try {
        if (processor.hasChannelCrosstalk()) {
            return false;
        }
        std::vector<std::uint8_t> ramp(256 * kRampRows * 4);
        for (int row = 0; row < kRampRows; ++row) {
            for (int i = 0; i < 256; ++i) {
                for (int c = 0; c < 4; ++c) {
                    ramp[static_cast<std::size_t>((row * 256 + i) * 4 + c)] = rampValue(row, i, c);
                }
            }
        }
        OIIO::ImageBuf buffer(OIIO::ImageSpec(256, kRampRows, 4, OIIO::TypeDesc::UINT8), ramp.data());
        // The same call the direct path makes, so the bytes are colorconvert's own.
        bool const converted = OIIO::ImageBufAlgo::colorconvert(buffer, buffer, &processor, false, OIIO::ROI(), 1);
        if (!converted || buffer.has_error()) {
            buffer.geterror(true);
            return false;
        }
        for (int i = 0; i < 256; ++i) {
            for (int c = 0; c < 4; ++c) {
                m_table[c][i] = ramp[static_cast<std::size_t>(i * 4 + c)];
            }
        }
        // Every other row must agree with the tables, or the conversion is
        // not a table per channel and the direct path is the only safe one.
        for (int row = 1; row < kRampRows; ++row) {
            for (int i = 0; i < 256; ++i) {
                for (int c = 0; c < 4; ++c) {
                    std::uint8_t const got = ramp[static_cast<std::size_t>((row * 256 + i) * 4 + c)];
                    if (got != m_table[c][rampValue(row, i, c)]) {
                        return false;
                    }
                }
            }
        }
        return true;
    } catch (...) {
        return false;
    }
}

void Rgba8Lookup::apply(verra::Rgba8* pixels, std::size_t count) const
{
    auto const convertRange = [this, pixels](std::int64_t begin, std::int64_t end) {
        for (std::int64_t i = begin; i < end; ++i) {
            verra::Rgba8& p = pixels[i];
            p = verra::Rgba8{m_table[0][p.r], m_table[1][p.g], m_table[2][p.b], m_table[3][p.a]};
        }
    };
    OIIO::parallel_for_chunked(0, static_cast<std::int64_t>(count), 0, convertRange);
}

} // namespace orv::verra_sdk::detail
