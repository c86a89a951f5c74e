#include "buffer_routes.h"

#include <OpenImageIO/imagebuf.h>
#include <OpenImageIO/imagebufalgo.h>
#include <OpenImageIO/parallel.h>

#include <array>
#include <cstring>
#include <memory>
#include <optional>
#include <vector>

namespace orv::verra_sdk::detail {

namespace {

/// What the module learned of one processor.
struct Routes {
    OIIO::ColorProcessorHandle processor;
    std::optional<std::unique_ptr<FloatRgba8Lookup>> rgba8; // built once; null inside: no tables
    std::optional<bool> packed[2]; // appliesLikeColorconvert for 3 and 4 channels
};

std::array<Routes, 4> s_routes;
std::size_t s_next = 0;

/// The entry of `processor`, made empty in the oldest slot when it has none.
Routes& routesOf(OIIO::ColorProcessorHandle const& processor)
{
    for (Routes& routes : s_routes) {
        if (routes.processor == processor) {
            return routes;
        }
    }
    Routes& slot = s_routes[s_next++ % s_routes.size()];
    slot = Routes{processor, std::nullopt, {}};
    return slot;
}

OIIO::ImageBuf wrap(void const* pixels, std::uint32_t width, std::uint32_t height, int channels, OIIO::TypeDesc type)
{
    OIIO::ImageSpec const spec(static_cast<int>(width), static_cast<int>(height), channels, type);
    return OIIO::ImageBuf(spec, const_cast<void*>(pixels), OIIO::AutoStride, OIIO::AutoStride, OIIO::AutoStride);
}

} // namespace

bool directRgba8(OIIO::ColorProcessorHandle const& processor, verra::float3 const* source, verra::Rgba8* destination,
                 std::uint32_t width, std::uint32_t height)
{
    OIIO::ImageBuf const src = wrap(source, width, height, 3, OIIO::TypeDesc::FLOAT);
    OIIO::ImageBuf dst = wrap(destination, width, height, 4, OIIO::TypeDesc::UINT8);
    OIIO::ROI const colour(0, static_cast<int>(width), 0, static_cast<int>(height), 0, 1, 0, 3);
    bool const converted = OIIO::ImageBufAlgo::colorconvert(dst, src, processor.get(), false, colour, 0);
    return dst.geterror(true).empty() && converted;
}

FloatRgba8Lookup const* floatRgba8Lookup(OIIO::ColorProcessorHandle const& processor)
{
    Routes& routes = routesOf(processor);
    if (!routes.rgba8) {
        std::unique_ptr<FloatRgba8Lookup> lookup;
        try {
            lookup = std::make_unique<FloatRgba8Lookup>();
        } catch (std::bad_alloc const&) {
            return nullptr;
        }
        auto const direct = [&processor](verra::float3 const* source, verra::Rgba8* destination, std::uint32_t count) {
            return directRgba8(processor, source, destination, count, 1);
        };
        if (!lookup->build(*processor, direct)) {
            lookup.reset();
        }
        routes.rgba8 = std::move(lookup);
    }
    return routes.rgba8->get();
}

bool appliesLikeColorconvert(OIIO::ColorProcessorHandle const& processor, int channels)
{
    std::optional<bool>& known = routesOf(processor).packed[channels == 4 ? 1 : 0];
    if (known) {
        return *known;
    }
    try {
        constexpr std::uint32_t kProbe = 4096;
        std::vector<std::uint32_t> probe(std::size_t{kProbe} * std::size_t(channels));
        std::uint32_t const specials[] = {0x7FC00000u, 0xFFC00000u, 0x7F800001u, 0x7F800000u, 0xFF800000u,
                                          0x00000000u, 0x80000000u, 0x00000001u, 0x80000001u, 0x00800000u,
                                          0x3F800000u, 0xBF000000u, 0x3F000000u, 0x7F7FFFFFu, 0xFF7FFFFFu};
        std::uint32_t state = 0x2545F491u;
        for (std::size_t i = 0; i < probe.size(); ++i) {
            state = state * 1664525u + 1013904223u;
            probe[i] = i < std::size(specials) ? specials[i] : state;
        }
        // colorconvert as the buffers take it: into another buffer from three
        // channels, in place with four.
        std::vector<std::uint32_t> viaColorconvert = probe, direct(probe.size());
        OIIO::ImageBuf const src = wrap(probe.data(), kProbe, 1, channels, OIIO::TypeDesc::FLOAT);
        OIIO::ImageBuf dst = wrap(viaColorconvert.data(), kProbe, 1, channels, OIIO::TypeDesc::FLOAT);
        bool const converted = OIIO::ImageBufAlgo::colorconvert(dst, channels == 4 ? dst : src, processor.get(), false,
                                                                OIIO::ROI::All(), 0);
        applyInPlace(*processor, reinterpret_cast<float const*>(probe.data()), reinterpret_cast<float*>(direct.data()),
                     kProbe, 1, channels);
        known = dst.geterror(true).empty() && converted && direct == viaColorconvert;
    } catch (...) {
        known = false;
    }
    return *known;
}

void applyInPlace(OIIO::ColorProcessor const& processor, float const* source, float* data, std::uint32_t width,
                  std::uint32_t height, int channels)
{
    std::size_t const row = std::size_t{width} * std::size_t(channels);
    // Row by row, the next row asked for while this one converts: the
    // processors read one pixel at a time, faster than some machines'
    // hardware prefetchers bring a stream in.
    auto const applyRows = [&](std::int64_t begin, std::int64_t end) {
        for (std::int64_t y = begin; y < end; ++y) {
            float* const line = data + std::size_t(y) * row;
            float const* const next = (source != nullptr ? source : data) + std::size_t(y + 1) * row;
            for (std::size_t i = 0; y + 1 < end && i < row; i += 16) {
                __builtin_prefetch(next + i);
            }
            if (source != nullptr) {
                std::memcpy(line, source + std::size_t(y) * row, row * sizeof(float));
            }
            processor.apply(line, static_cast<int>(width), 1, channels, sizeof(float),
                            OIIO::stride_t(std::size_t(channels) * sizeof(float)), OIIO::stride_t(row * sizeof(float)));
        }
    };
    OIIO::parallel_for_chunked(0, height, 8, applyRows);
}

} // namespace orv::verra_sdk::detail
