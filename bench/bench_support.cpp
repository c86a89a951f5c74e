#include "bench_support.h"

#include <atomic>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <new>
#include <sstream>

namespace stdfs = std::filesystem;

// Counts every allocation of the process, so a benchmark can report the
// allocations per call of the routine it times.
namespace {
std::atomic<std::uint64_t> g_allocations{0};
}

void* operator new(std::size_t size)
{
    g_allocations.fetch_add(1, std::memory_order_relaxed);
    if (void* p = std::malloc(size ? size : 1)) {
        return p;
    }
    throw std::bad_alloc();
}
void* operator new[](std::size_t size)
{
    return operator new(size);
}
void operator delete(void* p) noexcept
{
    std::free(p);
}
void operator delete[](void* p) noexcept
{
    std::free(p);
}
void operator delete(void* p, std::size_t) noexcept
{
    std::free(p);
}
void operator delete[](void* p, std::size_t) noexcept
{
    std::free(p);
}

namespace verra_bench {

namespace {

std::string const& benchDir()
{
    static std::string const dir = [] {
        stdfs::path const d = stdfs::temp_directory_path() / "verra-bench";
        stdfs::create_directories(d);
        return d.string();
    }();
    return dir;
}

std::string writeFile(std::string const& name, std::string const& text)
{
    std::string const path = benchDir() + "/" + name;
    std::ofstream(path) << text;
    return path;
}

/// "linear" (reference) and "sRGB" (the sRGB curve), plus `extra` identity spaces.
std::string configText(int extra)
{
    std::ostringstream out;
    out << "ocio_profile_version: 2.1\nroles:\n  default: linear\n  scene_linear: linear\n"
           "file_rules:\n  - !<Rule> {name: Default, colorspace: default}\n"
           "displays:\n  sRGB:\n    - !<View> {name: Standard, colorspace: sRGB}\n"
           "active_displays: []\nactive_views: []\ncolorspaces:\n"
           "  - !<ColorSpace>\n    name: linear\n"
           "  - !<ColorSpace>\n    name: sRGB\n"
           "    to_scene_reference: !<ExponentWithLinearTransform> {gamma: 2.4, offset: 0.055}\n";
    for (int i = 0; i < extra; ++i) {
        char name[32];
        std::snprintf(name, sizeof name, "space %03d", i);
        out << "  - !<ColorSpace>\n    name: \"" << name << "\"\n";
    }
    return out.str();
}

} // namespace

std::string realConfigPath()
{
    char const* env = std::getenv("VERRA_SHARED_CONFIGS");
    std::string const root = env && *env ? env : VERRA_DEFAULT_SHARED_CONFIGS;
    std::string const shared = root + "/imageworks-nuke-default/config.ocio";
    if (stdfs::is_regular_file(shared)) {
        return stdfs::canonical(shared).string();
    }
    return writeFile("linear-srgb.ocio", configText(0));
}

std::string configWithSpaces(int count)
{
    return writeFile("spaces-" + std::to_string(count) + ".ocio", configText(count - 2));
}

std::string useConfig(Config config)
{
    std::string const path = config == Config::File ? realConfigPath() : std::string();
    ::unsetenv("OCIO");
    orv::verra_sdk::ColorConfig::loadOcioConfig(orv::String(path.c_str()));
    return path;
}

OCIO::ConstProcessorRcPtr ocioProcessor(Config config, char const* from, char const* to)
{
    if (config == Config::File) {
        return OCIO::Config::CreateFromFile(realConfigPath().c_str())->getProcessor(from, to);
    }
    auto curve = OCIO::ExponentWithLinearTransform::Create();
    curve->setGamma({2.4, 2.4, 2.4, 1.0});
    curve->setOffset({0.055, 0.055, 0.055, 0.0});
    // Forward decodes to linear; linear to sRGB is the inverse.
    bool const toLinear = std::string(to) == "linear";
    curve->setDirection(toLinear ? OCIO::TRANSFORM_DIR_FORWARD : OCIO::TRANSFORM_DIR_INVERSE);
    return OCIO::Config::CreateRaw()->getProcessor(curve);
}

std::vector<std::uint8_t> rgba8Pixels()
{
    std::vector<std::uint8_t> pixels(static_cast<std::size_t>(kPixels) * 4);
    for (std::size_t i = 0; i < pixels.size(); ++i) {
        pixels[i] = static_cast<std::uint8_t>((i * 2654435761u) >> 24);
    }
    return pixels;
}

std::vector<float> floatPixels(int channels)
{
    std::vector<float> pixels(static_cast<std::size_t>(kPixels) * static_cast<std::size_t>(channels));
    for (std::size_t i = 0; i < pixels.size(); ++i) {
        pixels[i] = static_cast<float>((i * 2654435761u) >> 16 & 0xFFFF) / 65535.0f;
    }
    return pixels;
}

std::uint64_t allocationCount()
{
    return g_allocations.load(std::memory_order_relaxed);
}

} // namespace verra_bench
