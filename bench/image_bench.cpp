// RGBA8 images in place, 3840 × 2160: the module beside OpenImageIO's
// colorconvert on the same bytes with the same processor, OpenColorIO's own
// 8-bit processor, and memcpy.

#include "bench_support.h"

#include <OpenImageIO/imagebuf.h>
#include <OpenImageIO/imagebufalgo.h>
#include <benchmark/benchmark.h>

#include <cstring>

namespace verra_bench {
namespace {

using orv::verra_sdk::ColorConfig;
using orv::verra_sdk::Image;

void report(benchmark::State& state)
{
    state.SetItemsProcessed(state.iterations() * kPixels);
    state.SetBytesProcessed(state.iterations() * kPixels * 4);
}

void moduleImage(benchmark::State& state, Config config, char const* from, char const* to)
{
    useConfig(config);
    Image image = Image::create(kWidth, kHeight);
    std::vector<std::uint8_t> const pixels = rgba8Pixels();
    std::memcpy(image.rgba8(), pixels.data(), pixels.size());
    for (auto _ : state) {
        bool const ok = ColorConfig::transform(image, from, to);
        benchmark::DoNotOptimize(ok);
        if (!ok) {
            state.SkipWithError("conversion failed");
            break;
        }
    }
    report(state);
}

void oiioColorconvert(benchmark::State& state, Config config, char const* from, char const* to)
{
    useConfig(config);
    std::vector<std::uint8_t> pixels = rgba8Pixels();
    OIIO::ImageBuf buffer(OIIO::ImageSpec(kWidth, kHeight, 4, OIIO::TypeDesc::UINT8), pixels.data());
    OIIO::ColorProcessorHandle const processor = orv::verra_sdk::colorConfig().createColorProcessor(from, to);
    for (auto _ : state) {
        bool const ok = OIIO::ImageBufAlgo::colorconvert(buffer, buffer, processor.get(), false, OIIO::ROI(), 0);
        benchmark::DoNotOptimize(ok);
    }
    report(state);
}

void ocioPacked8(benchmark::State& state, Config config, char const* from, char const* to)
{
    std::vector<std::uint8_t> pixels = rgba8Pixels();
    OCIO::ConstCPUProcessorRcPtr const cpu =
        ocioProcessor(config, from, to)
            ->getOptimizedCPUProcessor(OCIO::BIT_DEPTH_UINT8, OCIO::BIT_DEPTH_UINT8, OCIO::OPTIMIZATION_DEFAULT);
    OCIO::PackedImageDesc desc(pixels.data(), kWidth, kHeight, 4, OCIO::BIT_DEPTH_UINT8, 1, 4, 4 * kWidth);
    for (auto _ : state) {
        cpu->apply(desc);
        benchmark::ClobberMemory();
    }
    report(state);
}

void copyBytes(benchmark::State& state)
{
    std::vector<std::uint8_t> const source = rgba8Pixels();
    std::vector<std::uint8_t> destination(source.size());
    for (auto _ : state) {
        std::memcpy(destination.data(), source.data(), source.size());
        benchmark::ClobberMemory();
    }
    report(state);
}

#define VERRA_IMAGE_BENCH(config, label, from, to)                                                                     \
    BENCHMARK_CAPTURE(moduleImage, label, config, from, to)->Unit(benchmark::kMillisecond)->UseRealTime();             \
    BENCHMARK_CAPTURE(oiioColorconvert, label, config, from, to)->Unit(benchmark::kMillisecond)->UseRealTime();        \
    BENCHMARK_CAPTURE(ocioPacked8, label, config, from, to)->Unit(benchmark::kMillisecond)->UseRealTime()

VERRA_IMAGE_BENCH(Config::BuiltIn, builtin / linear_to_sRGB, "linear", "sRGB");
VERRA_IMAGE_BENCH(Config::BuiltIn, builtin / sRGB_to_linear, "sRGB", "linear");
VERRA_IMAGE_BENCH(Config::File, file / linear_to_sRGB, "linear", "sRGB");
VERRA_IMAGE_BENCH(Config::File, file / sRGB_to_linear, "sRGB", "linear");
BENCHMARK(copyBytes)->Name("memcpyImage")->Unit(benchmark::kMillisecond)->UseRealTime();

} // namespace
} // namespace verra_bench
