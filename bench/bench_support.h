#pragma once
// Shared set-up of the benchmarks: configurations, buffers and an
// allocation counter.

#include <verra_sdk/colorconfig.h>

#include <OpenColorIO/OpenColorIO.h>

#include <cstdint>
#include <string>
#include <vector>

namespace verra_bench {

namespace OCIO = OCIO_NAMESPACE;

/// 3840 × 2160, the size of every image and buffer benchmark.
constexpr int kWidth = 3840;
constexpr int kHeight = 2160;
constexpr std::int64_t kPixels = std::int64_t{kWidth} * kHeight;

/// Which configuration a benchmark runs on.
enum class Config {
    BuiltIn, ///< OpenImageIO's own, no file
    File, ///< a real config file (the shared folder's, else one written here)
};

/// Points the module at `config` (a full reset) and returns the path used
/// ("" for the built-in configuration).
std::string useConfig(Config config);

/// The real config file: the shared folder's "linear"/"sRGB" config when it
/// is present, else a config with the same two names written by the bench.
std::string realConfigPath();

/// A config file with `count` colour spaces named "space 000", "space 001", …
std::string configWithSpaces(int count);

/// OpenColorIO's own processor for the same conversion: from the config file
/// for `Config::File`, from the sRGB curve as a built-in operator otherwise.
OCIO::ConstProcessorRcPtr ocioProcessor(Config config, char const* from, char const* to);

/// Deterministic pixel data.
std::vector<std::uint8_t> rgba8Pixels();
std::vector<float> floatPixels(int channels);

/// Heap allocations made by this process so far (operator new calls).
std::uint64_t allocationCount();

} // namespace verra_bench
