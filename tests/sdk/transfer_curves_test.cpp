// The built-in transfer curves, compared bit for bit with an
// independent computation over a dense sweep of single-precision inputs, both
// in the internal header and through the module's compiled code.

#include "conversion_test_support.h"

#include <verra_sdk/colorconfig.h>

#include <gtest/gtest.h>

#include <math.h>

#include <cmath>
#include <cstdint>
#include <cstdio>
#include <string>
#include <vector>

// The header's curves are inline functions with external linkage, which
// libverra_colorconfig.so exports. A copy compiled into this executable
// would interpose the module's own at run time (ELF symbol interposition):
// ColorConfig::transform would then run this file's code, built with this
// file's flags, and the test could not see how the module was compiled.
// Included into an unnamed namespace (its own includes are already in),
// this file's copy has internal linkage and stays out of the module's way.
namespace {
#include "transfer_curves.h"
} // namespace

namespace {

using verra_test::floatBits;
using verra_test::floatFromBits;
using verra_test::ulpDistance;
namespace curves = orv::verra_sdk::curves;

// The curves' constants, built from their bit patterns.
float const kSrgbDecodeThreshold = floatFromBits(0x3D25AEE6u); // 0.04045
float const kRec709DecodeThreshold = floatFromBits(0x3DA5E354u); // 0.081
float const kSrgbEncodeThreshold = floatFromBits(0x3B4D2E1Cu); // 0.0031308
float const kRec709EncodeThreshold = floatFromBits(0x3C9374BCu); // 0.018
float const kSrgbDecodeSlope = floatFromBits(0x3D9E8391u); // 0.07739938
float const kRec709DecodeSlope = floatFromBits(0x3E638E39u); // 0.22222222
float const kSrgbEncodeSlope = floatFromBits(0x414EB852u); // 12.92
float const kRec709EncodeSlope = floatFromBits(0x40900000u); // 4.5
float const kSrgbOffset = floatFromBits(0x3D6147AEu); // 0.055
float const kRec709Offset = floatFromBits(0x3DCAC083u); // 0.099
float const kSrgbDecodeScale = floatFromBits(0x3F72A76Fu); // 0.94786733
float const kRec709DecodeScale = floatFromBits(0x3F68F065u); // 0.90991813
float const kSrgbDecodePower = floatFromBits(0x4019999Au); // 2.4
float const kRec709DecodePower = floatFromBits(0x400E38E4u); // 2.2222223
float const kSrgbEncodePower = floatFromBits(0x3ED55555u); // 0.41666666
float const kRec709EncodePower = floatFromBits(0x3EE66666u); // 0.45
float const kSrgbEncodeScale = floatFromBits(0x3F870A3Du); // 1.055
float const kRec709EncodeScale = floatFromBits(0x3F8CAC08u); // 1.099

// Single-precision operations computed in double and rounded once to float:
// double has more than twice float's precision, so each is exactly the
// correctly rounded single-precision operation, whatever the compiler does
// with float expressions.
float add(float a, float b) { return static_cast<float>(static_cast<double>(a) + static_cast<double>(b)); }
float sub(float a, float b) { return static_cast<float>(static_cast<double>(a) - static_cast<double>(b)); }
float mul(float a, float b) { return static_cast<float>(static_cast<double>(a) * static_cast<double>(b)); }

/// One curve, written independently from its definition.
struct Curve {
    char const* name;
    float (*module)(float); // the header's function
    bool inclusive;         // >= (Rec.709) rather than > (sRGB)
    float threshold;
    bool decode; // offset, scale, power; else power, scale, minus offset
    float slope;
    float offset;
    float scale;
    float power;
    char const* from; // names for ColorConfig::transform
    char const* to;

    bool powerSegment(float x) const { return inclusive ? x >= threshold : x > threshold; }
    float linearSegment(float x) const { return mul(x, slope); }
    /// The base given to powf (decoding) or powf's argument (encoding).
    float base(float x) const { return decode ? mul(add(x, offset), scale) : x; }
    /// The power segment with the C library's powf, as the module computes it.
    float powerSegmentValue(float x) const
    {
        float const p = ::powf(base(x), power);
        return decode ? p : sub(mul(p, scale), offset);
    }
    float reference(float x) const { return powerSegment(x) ? powerSegmentValue(x) : linearSegment(x); }
};

std::vector<Curve> const& allCurves()
{
    static std::vector<Curve> const list{
        {"sRGB decoding", curves::srgbToLinear, false, kSrgbDecodeThreshold, true, kSrgbDecodeSlope, kSrgbOffset,
         kSrgbDecodeScale, kSrgbDecodePower, "sRGB", "linear"},
        {"Rec.709 decoding", curves::rec709ToLinear, true, kRec709DecodeThreshold, true, kRec709DecodeSlope,
         kRec709Offset, kRec709DecodeScale, kRec709DecodePower, "Rec709", "linear"},
        {"sRGB encoding", curves::linearToSrgb, false, kSrgbEncodeThreshold, false, kSrgbEncodeSlope, kSrgbOffset,
         kSrgbEncodeScale, kSrgbEncodePower, "linear", "sRGB"},
        {"Rec.709 encoding", curves::linearToRec709, true, kRec709EncodeThreshold, false, kRec709EncodeSlope,
         kRec709Offset, kRec709EncodeScale, kRec709EncodePower, "linear", "Rec709"},
    };
    return list;
}

/// Every `stride`-th float bit pattern in [-2, 4] (both zeros and both ends
/// included), then every threshold with its 64 neighbours on each side.
std::vector<float> sweep(std::uint32_t stride)
{
    std::vector<float> values;
    std::uint32_t const minusTwo = floatBits(-2.0f); // 0xC0000000
    std::uint32_t const four = floatBits(4.0f);      // 0x40800000
    for (std::uint32_t bits = 0x80000000u; bits < minusTwo; bits += stride) {
        values.push_back(floatFromBits(bits));
    }
    values.push_back(-2.0f);
    for (std::uint32_t bits = 0; bits < four; bits += stride) {
        values.push_back(floatFromBits(bits));
    }
    values.push_back(4.0f);
    for (Curve const& curve : allCurves()) {
        float below = curve.threshold;
        float above = curve.threshold;
        values.push_back(curve.threshold);
        for (int i = 0; i < 64; ++i) {
            below = std::nextafter(below, -1.0f);
            above = std::nextafter(above, 2.0f);
            values.push_back(below);
            values.push_back(above);
        }
    }
    return values;
}

std::string hex(float value)
{
    char text[16];
    std::snprintf(text, sizeof text, "0x%08X", floatBits(value));
    return text;
}

// A dense sweep of [-2, 4]: the header's curves equal the independent
// computation bit for bit, and the C library's powf, wherever the power
// segment uses it, is within one unit of the correctly rounded power.
TEST(TransferCurves, HeaderCurvesMatchAnIndependentComputationOverADenseSweep)
{
    std::vector<float> const values = sweep(4099);
    ASSERT_GT(values.size(), 500000u);
    for (Curve const& curve : allCurves()) {
        int mismatches = 0;
        std::int64_t worstUlps = 0;
        for (float x : values) {
            float const got = curve.module(x);
            float const want = curve.reference(x);
            if (floatBits(got) != floatBits(want) && ++mismatches <= 5) {
                ADD_FAILURE() << curve.name << " of " << x << " (" << hex(x) << "): got " << got << " (" << hex(got)
                              << "), want " << want << " (" << hex(want) << ")";
            }
            if (curve.powerSegment(x)) {
                float const base = curve.base(x);
                float const rounded =
                    static_cast<float>(std::pow(static_cast<double>(base), static_cast<double>(curve.power)));
                std::int64_t const ulps = ulpDistance(::powf(base, curve.power), rounded);
                worstUlps = ulps > worstUlps ? ulps : worstUlps;
            }
        }
        EXPECT_EQ(mismatches, 0) << curve.name;
        EXPECT_LE(worstUlps, 1) << curve.name;
    }
}

// Strictly above the threshold for sRGB, at or above it for Rec.709.
TEST(TransferCurves, ThresholdsAreStrictForSrgbAndInclusiveForRec709)
{
    for (Curve const& curve : allCurves()) {
        float const t = curve.threshold;
        float const below = std::nextafter(t, -1.0f);
        float const above = std::nextafter(t, 2.0f);
        EXPECT_EQ(floatBits(curve.module(below)), floatBits(curve.linearSegment(below))) << curve.name;
        EXPECT_EQ(floatBits(curve.module(above)), floatBits(curve.powerSegmentValue(above))) << curve.name;
        if (curve.inclusive) {
            EXPECT_EQ(floatBits(curve.module(t)), floatBits(curve.powerSegmentValue(t))) << curve.name;
        } else {
            EXPECT_EQ(floatBits(curve.module(t)), floatBits(curve.linearSegment(t))) << curve.name;
        }
    }
    // At the thresholds the two segments differ, so the tests above tell
    // which one was taken.
    EXPECT_NE(curves::srgbToLinear(kSrgbDecodeThreshold), allCurves()[0].powerSegmentValue(kSrgbDecodeThreshold));
    EXPECT_NE(curves::rec709ToLinear(kRec709DecodeThreshold), allCurves()[1].linearSegment(kRec709DecodeThreshold));
    EXPECT_NE(curves::linearToSrgb(kSrgbEncodeThreshold), allCurves()[2].powerSegmentValue(kSrgbEncodeThreshold));
    EXPECT_NE(curves::linearToRec709(kRec709EncodeThreshold), allCurves()[3].linearSegment(kRec709EncodeThreshold));
}

// No clamping: negatives (and -0) take the linear segment, values above 1
// the power segment.
TEST(TransferCurves, NothingIsClamped)
{
    for (Curve const& curve : allCurves()) {
        EXPECT_EQ(floatBits(curve.module(-0.0f)), floatBits(-0.0f)) << curve.name;
        EXPECT_EQ(floatBits(curve.module(0.0f)), floatBits(0.0f)) << curve.name;
        EXPECT_EQ(floatBits(curve.module(-1.5f)), floatBits(mul(-1.5f, curve.slope))) << curve.name;
        EXPECT_EQ(floatBits(curve.module(3.0f)), floatBits(curve.powerSegmentValue(3.0f))) << curve.name;
        EXPECT_GT(curve.module(3.0f), 1.0f) << curve.name;
    }
}

// The module's compiled curves (built with its own flags) give the same bits
// through ColorConfig::transform: three sweep values per call, each result a
// float widened to double.
TEST(TransferCurves, ModuleCurvesMatchTheIndependentComputationThroughTransform)
{
    verra_test::EnvGuard const ocio("OCIO");
    ocio.unset();
    std::vector<float> const values = sweep(65537);
    for (Curve const& curve : allCurves()) {
        int mismatches = 0;
        for (std::size_t i = 0; i + 2 < values.size(); i += 3) {
            ::orv::math::RgbaT<double> const in{values[i], values[i + 1], values[i + 2], 0.25};
            ::orv::math::RgbaT<double> const out = ::orv::verra_sdk::ColorConfig::transform(
                in, ::orv::String(curve.from), ::orv::String(curve.to));
            double const got[3] = {out.r, out.g, out.b};
            for (std::size_t c = 0; c < 3; ++c) {
                float const want = curve.reference(values[i + c]);
                bool const same = static_cast<double>(want) == got[c] &&
                                  std::signbit(static_cast<double>(want)) == std::signbit(got[c]);
                if (!same && ++mismatches <= 5) {
                    ADD_FAILURE() << curve.name << " of " << values[i + c] << ": got " << got[c] << ", want " << want;
                }
            }
            EXPECT_EQ(verra_test::doubleBits(out.a), verra_test::doubleBits(0.25));
        }
        EXPECT_EQ(mismatches, 0) << curve.name;
    }
}

} // namespace
