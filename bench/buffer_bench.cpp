// Float pixel buffers out of "linear", 3840 × 2160: the module's buffer
// transforms beside OpenImageIO's colorconvert on the same buffers with the
// same processor, OpenColorIO's own processor, and memcpy.

#include "bench_support.h"

#include <OpenImageIO/imagebuf.h>
#include <OpenImageIO/imagebufalgo.h>
#include <OpenImageIO/parallel.h>
#include <benchmark/benchmark.h>

#include <cstring>

namespace verra_bench {
namespace {

using orv::verra::float3;
using orv::verra::float4;
using orv::verra::Rgba8;
using orv::verra::Vector2d;

void report(benchmark::State& state, std::int64_t bytesPerPixel)
{
    state.SetItemsProcessed(state.iterations() * kPixels);
    state.SetBytesProcessed(state.iterations() * kPixels * bytesPerPixel);
}

template <class T>
Vector2d<T, true> filled(int channels)
{
    Vector2d<T, true> array;
    array.allocate(kWidth, kHeight);
    std::vector<float> const values = floatPixels(channels);
    std::memcpy(array.data, values.data(), values.size() * sizeof(float));
    return array;
}

OIIO::ImageBuf wrap(void* data, int channels, OIIO::TypeDesc type)
{
    return OIIO::ImageBuf(OIIO::ImageSpec(kWidth, kHeight, channels, type), data);
}

// --- float RGB to RGBA8 ---------------------------------------------------

void moduleGenerateRgba8(benchmark::State& state, Config config)
{
    useConfig(config);
    Vector2d<float3, true> const source = filled<float3>(3);
    Vector2d<Rgba8, true> destination;
    for (auto _ : state) {
        benchmark::DoNotOptimize(orv::verra_sdk::colorConfigGenerateRgba8(source, destination, "sRGB"));
    }
    report(state, 12);
}

void oiioGenerateRgba8(benchmark::State& state, Config config)
{
    useConfig(config);
    Vector2d<float3, true> source = filled<float3>(3);
    std::vector<Rgba8> destination(static_cast<std::size_t>(kPixels));
    OIIO::ImageBuf const src = wrap(source.data, 3, OIIO::TypeDesc::FLOAT);
    OIIO::ImageBuf dst = wrap(destination.data(), 4, OIIO::TypeDesc::UINT8);
    OIIO::ColorProcessorHandle const processor = orv::verra_sdk::colorConfig().createColorProcessor("linear", "sRGB");
    // The three colour channels only, as the module converts them.
    OIIO::ROI const roi(0, kWidth, 0, kHeight, 0, 1, 0, 3);
    for (auto _ : state) {
        benchmark::DoNotOptimize(OIIO::ImageBufAlgo::colorconvert(dst, src, processor.get(), false, roi, 0));
    }
    report(state, 12);
}

// --- float RGB to float RGB -----------------------------------------------

void moduleTransformRgb(benchmark::State& state, Config config)
{
    useConfig(config);
    Vector2d<float3, true> const source = filled<float3>(3);
    Vector2d<float3, true> destination;
    destination.allocate(kWidth, kHeight);
    for (auto _ : state) {
        benchmark::DoNotOptimize(orv::verra_sdk::colorConfigTransformRgb(source, destination, "sRGB"));
    }
    report(state, 12);
}

void oiioTransformRgb(benchmark::State& state, Config config)
{
    useConfig(config);
    Vector2d<float3, true> source = filled<float3>(3);
    Vector2d<float3, true> destination;
    destination.allocate(kWidth, kHeight);
    OIIO::ImageBuf const src = wrap(source.data, 3, OIIO::TypeDesc::FLOAT);
    OIIO::ImageBuf dst = wrap(destination.data, 3, OIIO::TypeDesc::FLOAT);
    OIIO::ColorProcessorHandle const processor = orv::verra_sdk::colorConfig().createColorProcessor("linear", "sRGB");
    for (auto _ : state) {
        benchmark::DoNotOptimize(
            OIIO::ImageBufAlgo::colorconvert(dst, src, processor.get(), false, OIIO::ROI::All(), 0));
    }
    report(state, 12);
}

// --- float RGBA in place --------------------------------------------------

void moduleTransformRgba(benchmark::State& state, Config config)
{
    useConfig(config);
    Vector2d<float4, true> pixels = filled<float4>(4);
    for (auto _ : state) {
        benchmark::DoNotOptimize(orv::verra_sdk::colorConfigTransformRgb(pixels, "sRGB"));
    }
    report(state, 16);
}

void oiioTransformRgba(benchmark::State& state, Config config)
{
    useConfig(config);
    Vector2d<float4, true> pixels = filled<float4>(4);
    OIIO::ImageBuf buffer = wrap(pixels.data, 4, OIIO::TypeDesc::FLOAT);
    OIIO::ColorProcessorHandle const processor = orv::verra_sdk::colorConfig().createColorProcessor("linear", "sRGB");
    for (auto _ : state) {
        benchmark::DoNotOptimize(
            OIIO::ImageBufAlgo::colorconvert(buffer, buffer, processor.get(), false, OIIO::ROI::All(), 0));
    }
    report(state, 16);
}

/// The limit of the in-place route: the same processor's own `apply` over
/// the whole buffer, split into row ranges over OpenImageIO's threads.
void processorApplyRgba(benchmark::State& state, Config config)
{
    useConfig(config);
    Vector2d<float4, true> pixels = filled<float4>(4);
    OIIO::ColorProcessorHandle const processor = orv::verra_sdk::colorConfig().createColorProcessor("linear", "sRGB");
    auto const applyRows = [&](std::int64_t begin, std::int64_t end) {
        processor->apply(&pixels.data[begin * kWidth].r, kWidth, int(end - begin), 4, sizeof(float), 16, 16 * kWidth);
    };
    for (auto _ : state) {
        OIIO::parallel_for_chunked(0, kHeight, 0, applyRows);
        benchmark::ClobberMemory();
    }
    report(state, 16);
}

// --- OpenColorIO's own processor on packed float RGB / RGBA ---------------

void ocioPackedFloat(benchmark::State& state, Config config, int channels)
{
    std::vector<float> pixels = floatPixels(channels);
    OCIO::ConstCPUProcessorRcPtr const cpu = ocioProcessor(config, "linear", "sRGB")->getDefaultCPUProcessor();
    OCIO::PackedImageDesc desc(pixels.data(), kWidth, kHeight, channels);
    for (auto _ : state) {
        cpu->apply(desc);
        benchmark::ClobberMemory();
    }
    report(state, 4 * channels);
}

void copyFloats(benchmark::State& state, int channels)
{
    std::vector<float> const source = floatPixels(channels);
    std::vector<float> destination(source.size());
    for (auto _ : state) {
        std::memcpy(destination.data(), source.data(), source.size() * sizeof(float));
        benchmark::ClobberMemory();
    }
    report(state, 4 * channels);
}

#define VERRA_BUFFER_BENCH(fn, config, label)                                                                          \
    BENCHMARK_CAPTURE(fn, label, config)->Unit(benchmark::kMillisecond)->UseRealTime()

VERRA_BUFFER_BENCH(moduleGenerateRgba8, Config::BuiltIn, builtin);
VERRA_BUFFER_BENCH(oiioGenerateRgba8, Config::BuiltIn, builtin);
VERRA_BUFFER_BENCH(moduleGenerateRgba8, Config::File, file);
VERRA_BUFFER_BENCH(oiioGenerateRgba8, Config::File, file);
VERRA_BUFFER_BENCH(moduleTransformRgb, Config::BuiltIn, builtin);
VERRA_BUFFER_BENCH(oiioTransformRgb, Config::BuiltIn, builtin);
VERRA_BUFFER_BENCH(moduleTransformRgb, Config::File, file);
VERRA_BUFFER_BENCH(oiioTransformRgb, Config::File, file);
VERRA_BUFFER_BENCH(moduleTransformRgba, Config::BuiltIn, builtin);
VERRA_BUFFER_BENCH(oiioTransformRgba, Config::BuiltIn, builtin);
VERRA_BUFFER_BENCH(moduleTransformRgba, Config::File, file);
VERRA_BUFFER_BENCH(processorApplyRgba, Config::BuiltIn, builtin);
VERRA_BUFFER_BENCH(processorApplyRgba, Config::File, file);
VERRA_BUFFER_BENCH(oiioTransformRgba, Config::File, file);
BENCHMARK_CAPTURE(ocioPackedFloat, builtin / rgb, Config::BuiltIn, 3)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK_CAPTURE(ocioPackedFloat, file / rgb, Config::File, 3)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK_CAPTURE(ocioPackedFloat, builtin / rgba, Config::BuiltIn, 4)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK_CAPTURE(ocioPackedFloat, file / rgba, Config::File, 4)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK_CAPTURE(copyFloats, rgb, 3)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK_CAPTURE(copyFloats, rgba, 4)->Unit(benchmark::kMillisecond)->UseRealTime();

} // namespace
} // namespace verra_bench
