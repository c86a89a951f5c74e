#pragma once
// The built-in sRGB and Rec.709 transfer curves, in single precision.
//
// Each addition, multiplication and subtraction is its own single-precision
// operation (the module is built without floating-point contraction), and
// the power is the C library's powf, so the results do not depend on the
// compiler's flags or the target CPU. The curves multiply by single-precision
// reciprocals and never divide. Values are not clamped: negatives take the
// linear segment, values above 1 the power segment.

#include <math.h>

#include <cstdint>

namespace orv::verra_sdk::curves {
// Internal linkage: each user compiles its own copy with its own flags, and
// no other copy can stand in for the module's at link or load time.
namespace {

constexpr float kSrgbDecodeThreshold = 0.04045f;
constexpr float kSrgbDecodeSlope = 0.07739938f; // 1 / 12.92
constexpr float kSrgbOffset = 0.055f;
constexpr float kSrgbDecodeScale = 0.94786733f; // 1 / 1.055f, rounded up one unit
constexpr float kSrgbDecodePower = 2.4f;
constexpr float kSrgbEncodeThreshold = 0.0031308f;
constexpr float kSrgbEncodeSlope = 12.92f;
constexpr float kSrgbEncodePower = 0.41666666f; // 1 / 2.4
constexpr float kSrgbEncodeScale = 1.055f;

constexpr float kRec709DecodeThreshold = 0.081f;
constexpr float kRec709DecodeSlope = 0.22222222f; // 1 / 4.5
constexpr float kRec709Offset = 0.099f;
constexpr float kRec709DecodeScale = 0.90991813f; // 1 / 1.099
constexpr float kRec709DecodePower = 2.2222223f; // 1 / 0.45
constexpr float kRec709EncodeThreshold = 0.018f;
constexpr float kRec709EncodeSlope = 4.5f;
constexpr float kRec709EncodePower = 0.45f;
constexpr float kRec709EncodeScale = 1.099f;

// The constants' exact bit patterns are part of the curves' definition.
constexpr std::uint32_t bitsOf(float value)
{
    return __builtin_bit_cast(std::uint32_t, value);
}
static_assert(bitsOf(kSrgbDecodeThreshold) == 0x3D25AEE6u);
static_assert(bitsOf(kSrgbDecodeSlope) == 0x3D9E8391u);
static_assert(bitsOf(kSrgbOffset) == 0x3D6147AEu);
static_assert(bitsOf(kSrgbDecodeScale) == 0x3F72A76Fu);
static_assert(bitsOf(kSrgbDecodePower) == 0x4019999Au);
static_assert(bitsOf(kSrgbEncodeThreshold) == 0x3B4D2E1Cu);
static_assert(bitsOf(kSrgbEncodeSlope) == 0x414EB852u);
static_assert(bitsOf(kSrgbEncodePower) == 0x3ED55555u);
static_assert(bitsOf(kSrgbEncodeScale) == 0x3F870A3Du);
static_assert(bitsOf(kRec709DecodeThreshold) == 0x3DA5E354u);
static_assert(bitsOf(kRec709DecodeSlope) == 0x3E638E39u);
static_assert(bitsOf(kRec709Offset) == 0x3DCAC083u);
static_assert(bitsOf(kRec709DecodeScale) == 0x3F68F065u);
static_assert(bitsOf(kRec709DecodePower) == 0x400E38E4u);
static_assert(bitsOf(kRec709EncodeThreshold) == 0x3C9374BCu);
static_assert(bitsOf(kRec709EncodeSlope) == 0x40900000u);
static_assert(bitsOf(kRec709EncodePower) == 0x3EE66666u);
static_assert(bitsOf(kRec709EncodeScale) == 0x3F8CAC08u);

/// sRGB-encoded value to linear; strictly above the threshold takes the power.
inline float srgbToLinear(float x)
{
    if (x > kSrgbDecodeThreshold) {
        float const base = (x + kSrgbOffset) * kSrgbDecodeScale;
        return ::powf(base, kSrgbDecodePower);
    }
    return x * kSrgbDecodeSlope;
}

/// Rec.709-encoded value to linear; at or above the threshold takes the power.
inline float rec709ToLinear(float x)
{
    if (x >= kRec709DecodeThreshold) {
        float const base = (x + kRec709Offset) * kRec709DecodeScale;
        return ::powf(base, kRec709DecodePower);
    }
    return x * kRec709DecodeSlope;
}

/// Linear value to sRGB encoding; strictly above the threshold takes the power.
inline float linearToSrgb(float x)
{
    if (x > kSrgbEncodeThreshold) {
        float const scaled = ::powf(x, kSrgbEncodePower) * kSrgbEncodeScale;
        return scaled - kSrgbOffset;
    }
    return x * kSrgbEncodeSlope;
}

/// Linear value to Rec.709 encoding; at or above the threshold takes the power.
inline float linearToRec709(float x)
{
    if (x >= kRec709EncodeThreshold) {
        float const scaled = ::powf(x, kRec709EncodePower) * kRec709EncodeScale;
        return scaled - kRec709Offset;
    }
    return x * kRec709EncodeSlope;
}

} // namespace
} // namespace orv::verra_sdk::curves
