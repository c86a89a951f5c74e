// One colour: the built-in curves beside three bare powf evaluations of the
// same curve, with heap allocations per call counted; the processor path
// beside createColorProcessor + apply called directly.

#include "bench_support.h"

#include <benchmark/benchmark.h>

#include <math.h>

namespace verra_bench {
namespace {

using orv::math::RgbaT;
using orv::verra_sdk::ColorConfig;

/// Inputs that cover both segments of the curves.
constexpr double kInputs[8] = {0.001, 0.02, 0.18, 0.5, 0.75, 1.0, 0.003, 0.3};

void moduleCurve(benchmark::State& state, char const* from, char const* to)
{
    useConfig(Config::BuiltIn);
    orv::String const source(from);
    orv::String const target(to);
    std::size_t i = 0;
    std::uint64_t const before = allocationCount();
    for (auto _ : state) {
        double const v = kInputs[i++ & 7];
        RgbaT<double> const out = ColorConfig::transform(RgbaT<double>{v, v * 0.5, v * 0.25, 1.0}, source, target);
        benchmark::DoNotOptimize(out);
    }
    state.counters["allocs/call"] =
        benchmark::Counter(static_cast<double>(allocationCount() - before) / static_cast<double>(state.iterations()));
}

/// The cost floor of a built-in curve: three single-precision powers.
void bareThreePowf(benchmark::State& state, float exponent)
{
    std::size_t i = 0;
    for (auto _ : state) {
        float const v = static_cast<float>(kInputs[i++ & 7]);
        float r = v, g = v * 0.5f, b = v * 0.25f;
        benchmark::DoNotOptimize(r);
        benchmark::DoNotOptimize(g);
        benchmark::DoNotOptimize(b);
        float const out[3] = {::powf(r, exponent), ::powf(g, exponent), ::powf(b, exponent)};
        benchmark::DoNotOptimize(out);
    }
}

/// What the interface itself costs: two String handles passed by value
/// (each copy and destruction one reference-count update).
__attribute__((noinline)) bool takeTwoNames(orv::String from, orv::String to)
{
    return from.buf() != to.buf();
}

void twoNamesByValue(benchmark::State& state)
{
    orv::String const source("linear");
    orv::String const target("sRGB");
    for (auto _ : state) {
        benchmark::DoNotOptimize(takeTwoNames(source, target));
    }
}

void moduleProcessor(benchmark::State& state)
{
    orv::verra_sdk::ColorConfig::loadOcioConfig(orv::String(configWithSpaces(3).c_str()));
    orv::String const source("sRGB");
    orv::String const target("space 000");
    RgbaT<double> const probe = ColorConfig::transform(RgbaT<double>{0.5, 0.5, 0.5, 1.0}, source, target);
    if (probe.r == 0.5) {
        state.SkipWithError("no processor");
        return;
    }
    std::size_t i = 0;
    for (auto _ : state) {
        double const v = kInputs[i++ & 7];
        benchmark::DoNotOptimize(ColorConfig::transform(RgbaT<double>{v, v, v, 1.0}, source, target));
    }
}

void oiioProcessorDirect(benchmark::State& state)
{
    orv::verra_sdk::ColorConfig::loadOcioConfig(orv::String(configWithSpaces(3).c_str()));
    OIIO::ColorConfig& config = orv::verra_sdk::colorConfig();
    if (!config.createColorProcessor("sRGB", "space 000", "", "")) {
        state.SkipWithError("no processor");
        return;
    }
    std::size_t i = 0;
    for (auto _ : state) {
        float rgb[3];
        rgb[0] = rgb[1] = rgb[2] = static_cast<float>(kInputs[i++ & 7]);
        OIIO::ColorProcessorHandle const processor = config.createColorProcessor("sRGB", "space 000", "", "");
        processor->apply(rgb, 1, 1, 3, sizeof(float), 3 * sizeof(float), 3 * sizeof(float));
        benchmark::DoNotOptimize(rgb);
    }
}

BENCHMARK_CAPTURE(moduleCurve, linear_to_sRGB, "linear", "sRGB");
BENCHMARK_CAPTURE(moduleCurve, sRGB_to_linear, "sRGB", "linear");
BENCHMARK_CAPTURE(moduleCurve, linear_to_Rec709, "linear", "Rec709");
BENCHMARK_CAPTURE(moduleCurve, Rec709_to_linear, "Rec709", "linear");
BENCHMARK_CAPTURE(bareThreePowf, encode, 0.41666666f);
BENCHMARK_CAPTURE(bareThreePowf, decode, 2.4f);
BENCHMARK(twoNamesByValue);
BENCHMARK(moduleProcessor);
BENCHMARK(oiioProcessorDirect);

} // namespace
} // namespace verra_bench
