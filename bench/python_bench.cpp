// A pixel call from Python beside the same call from C++, 3840 × 2160, in
// one process: the interpreter is embedded, imports verra_colorconfig from
// the build tree, and both sides convert the same numpy array's memory
// through the same module under the same config. The Python rows include
// everything a script pays: the call, the array checks, the lock and the
// GIL release.

#include "bench_support.h"

#include <verra_sdk/colorconfig.h>
#include <verra_sdk/kit/borrowed_pixels.h>

#include <benchmark/benchmark.h>
#include <pybind11/embed.h>
#include <pybind11/numpy.h>

#include <cstdint>

#ifndef VERRA_PYTHON_BUILD_DIR
#error "VERRA_PYTHON_BUILD_DIR must name the folder of the built Python module"
#endif

namespace py = pybind11;

namespace verra_bench {
namespace {

namespace sdk = orv::verra_sdk;
namespace kit = orv::verra_sdk::kit;

void report(benchmark::State& state)
{
    state.SetItemsProcessed(state.iterations() * kPixels);
}

/// A 3840 × 2160 numpy array of `channels` channels, of the bench's pixels.
template <class T>
py::array_t<T> pixels(int channels)
{
    py::array_t<T> array({py::ssize_t{kHeight}, py::ssize_t{kWidth}, py::ssize_t{channels}});
    T* const out = array.mutable_data();
    if constexpr (sizeof(T) == 1) {
        std::vector<std::uint8_t> const values = rgba8Pixels();
        std::copy(values.begin(), values.end(), out);
    } else {
        std::vector<float> const values = floatPixels(channels);
        std::copy(values.begin(), values.end(), out);
    }
    return array;
}

void rgbaInPlaceCpp(benchmark::State& state, py::handle)
{
    py::array_t<float> array = pixels<float>(4);
    kit::BorrowedPixels<orv::verra::float4> buffer(array.mutable_data(), kWidth, kHeight);
    for (auto _ : state) {
        benchmark::DoNotOptimize(sdk::colorConfigTransformRgb(buffer.array(), "sRGB"));
    }
    report(state);
}

void rgbaInPlacePython(benchmark::State& state, py::handle vc)
{
    py::array_t<float> array = pixels<float>(4);
    py::object const call = vc.attr("transform_rgb");
    for (auto _ : state) {
        call(array, "sRGB");
    }
    report(state);
}

void rgba8ImageCpp(benchmark::State& state, py::handle)
{
    py::array_t<std::uint8_t> array = pixels<std::uint8_t>(4);
    for (auto _ : state) {
        sdk::Image const image =
            sdk::Image::wrap(reinterpret_cast<orv::verra::Rgba8*>(array.mutable_data()), kWidth, kHeight);
        benchmark::DoNotOptimize(sdk::ColorConfig::transform(image, "linear", "sRGB"));
    }
    report(state);
}

void rgba8ImagePython(benchmark::State& state, py::handle vc)
{
    py::array_t<std::uint8_t> array = pixels<std::uint8_t>(4);
    py::object const call = vc.attr("transform_image");
    for (auto _ : state) {
        call(array, "linear", "sRGB");
    }
    report(state);
}

void generateRgba8Cpp(benchmark::State& state, py::handle)
{
    py::array_t<float> array = pixels<float>(3);
    kit::BorrowedPixels<orv::verra::float3> source(array.mutable_data(), kWidth, kHeight);
    for (auto _ : state) {
        // A new destination each time, as Python gets a new array.
        orv::verra::Vector2d<orv::verra::Rgba8, true> destination;
        benchmark::DoNotOptimize(sdk::colorConfigGenerateRgba8(source.array(), destination, "sRGB"));
    }
    report(state);
}

void generateRgba8Python(benchmark::State& state, py::handle vc)
{
    py::array_t<float> array = pixels<float>(3);
    py::object const call = vc.attr("generate_rgba8");
    for (auto _ : state) {
        benchmark::DoNotOptimize(call(array, "sRGB").ptr());
    }
    report(state);
}

} // namespace
} // namespace verra_bench

int main(int argc, char** argv)
{
    py::scoped_interpreter const interpreter;
    py::module_::import("sys").attr("path").attr("insert")(0, VERRA_PYTHON_BUILD_DIR);
    py::module_ const vc = py::module_::import("verra_colorconfig");
    vc.attr("load_ocio_config")(verra_bench::realConfigPath());

    using Case = void (*)(benchmark::State&, py::handle);
    std::pair<char const*, Case> const cases[] = {
        {"rgbaInPlace/cpp", verra_bench::rgbaInPlaceCpp},
        {"rgbaInPlace/python", verra_bench::rgbaInPlacePython},
        {"rgba8Image/cpp", verra_bench::rgba8ImageCpp},
        {"rgba8Image/python", verra_bench::rgba8ImagePython},
        {"generateRgba8/cpp", verra_bench::generateRgba8Cpp},
        {"generateRgba8/python", verra_bench::generateRgba8Python},
    };
    for (auto const& [name, run] : cases) {
        // A handle, not a reference: the registrations outlive the interpreter.
        benchmark::RegisterBenchmark(name, run, py::handle(vc))->Unit(benchmark::kMillisecond)->UseRealTime();
    }
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
