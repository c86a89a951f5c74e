// The catalogue on filled caches, and a full load beside a bare reset of
// OpenImageIO's configuration on the same file.

#include "bench_support.h"

#include <benchmark/benchmark.h>

#include <cstdio>

namespace verra_bench {
namespace {

using orv::verra_sdk::ColorConfig;

void colorSpaces(benchmark::State& state)
{
    ColorConfig::loadOcioConfig(orv::String(configWithSpaces(static_cast<int>(state.range(0))).c_str()));
    for (auto _ : state) {
        benchmark::DoNotOptimize(ColorConfig::colorSpaces());
    }
}

/// A name near the end of the list, typed in another case with blanks.
void findColorSpace(benchmark::State& state)
{
    int const count = static_cast<int>(state.range(0));
    ColorConfig::loadOcioConfig(orv::String(configWithSpaces(count).c_str()));
    char typed[32];
    std::snprintf(typed, sizeof typed, " SPACE %03d ", count - 4);
    orv::String const name(typed);
    if (ColorConfig::findColorSpace(name).isEmpty()) {
        state.SkipWithError("name not found");
    }
    for (auto _ : state) {
        benchmark::DoNotOptimize(ColorConfig::findColorSpace(name));
    }
}

void displaysAndViews(benchmark::State& state)
{
    ColorConfig::loadOcioConfig(orv::String(realConfigPath().c_str()));
    for (auto _ : state) {
        benchmark::DoNotOptimize(orv::verra_sdk::displays());
        benchmark::DoNotOptimize(orv::verra_sdk::views());
    }
}

// Both alternate between the real config and a small one: OpenImageIO skips
// a reset to the file it already holds.
void loadOcioConfig(benchmark::State& state)
{
    orv::String const paths[2] = {orv::String(realConfigPath().c_str()), orv::String(configWithSpaces(3).c_str())};
    std::size_t i = 0;
    for (auto _ : state) {
        benchmark::DoNotOptimize(ColorConfig::loadOcioConfig(paths[i++ & 1]));
    }
}

void bareReset(benchmark::State& state)
{
    std::string const paths[2] = {realConfigPath(), configWithSpaces(3)};
    OIIO::ColorConfig& config = orv::verra_sdk::colorConfig();
    std::size_t i = 0;
    for (auto _ : state) {
        benchmark::DoNotOptimize(config.reset(paths[i++ & 1]));
    }
}

BENCHMARK(colorSpaces)->Arg(40)->Arg(150);
BENCHMARK(findColorSpace)->Arg(40)->Arg(150);
BENCHMARK(displaysAndViews);
BENCHMARK(loadOcioConfig)->Unit(benchmark::kMillisecond);
BENCHMARK(bareReset)->Unit(benchmark::kMillisecond);

} // namespace
} // namespace verra_bench
