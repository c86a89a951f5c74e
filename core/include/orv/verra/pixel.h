#pragma once
// Pixel types stored in pixel arrays and handed to image libraries as raw,
// tightly packed memory: their layouts are binding and checked below.

#include <cstddef>
#include <cstdint>
#include <type_traits>

namespace orv::verra {

/// Four unsigned 8-bit channels r, g, b, a.
struct Rgba8 {
    std::uint8_t r;
    std::uint8_t g;
    std::uint8_t b;
    std::uint8_t a;
};

/// Three 32-bit float channels r, g, b.
struct float3 {
    float r;
    float g;
    float b;
};

/// Four 32-bit float channels r, g, b, a.
struct float4 {
    float r;
    float g;
    float b;
    float a;
};

static_assert(sizeof(Rgba8) == 4 && alignof(Rgba8) == 1);
static_assert(offsetof(Rgba8, r) == 0 && offsetof(Rgba8, g) == 1 && offsetof(Rgba8, b) == 2 && offsetof(Rgba8, a) == 3);
static_assert(sizeof(float) == 4);
static_assert(sizeof(float3) == 12);
static_assert(offsetof(float3, r) == 0 && offsetof(float3, g) == 4 && offsetof(float3, b) == 8);
static_assert(sizeof(float4) == 16);
static_assert(offsetof(float4, r) == 0 && offsetof(float4, g) == 4 && offsetof(float4, b) == 8 &&
              offsetof(float4, a) == 12);
static_assert(std::is_trivially_copyable_v<Rgba8> && std::is_standard_layout_v<Rgba8>);
static_assert(std::is_trivially_copyable_v<float3> && std::is_standard_layout_v<float3>);
static_assert(std::is_trivially_copyable_v<float4> && std::is_standard_layout_v<float4>);

} // namespace orv::verra
