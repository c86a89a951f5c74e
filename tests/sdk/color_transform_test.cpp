// ColorConfig::transform, colorSpaceToLinear and linearToColorSpace on one
// colour: the numeric examples, names without case, the alpha
// channel bit for bit on every path, and the processor path.

#include "conversion_test_support.h"

#include <verra_sdk/colorconfig.h>

#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <string>

namespace {

using orv::String;
using orv::math::RgbaT;
using orv::verra_sdk::ColorConfig;
using verra_test::doubleBits;
using verra_test::doubleFromBits;
using verra_test::floatBits;
using verra_test::ulpDistance;

using Color = RgbaT<double>;

class ColorTransform : public verra_test::ConversionTest {};

/// Unusual alpha bit patterns: a signalling NaN with a payload, a negative
/// quiet NaN with a payload, the smallest denormal, a negative denormal.
std::uint64_t const kOddAlphas[] = {0x7FF4000000000123ull, 0xFFF80000DEADBEEFull, 0x0000000000000001ull,
                                    0x800000000000000Full};

void expectSameBits(Color const& got, Color const& want)
{
    EXPECT_EQ(doubleBits(got.r), doubleBits(want.r));
    EXPECT_EQ(doubleBits(got.g), doubleBits(want.g));
    EXPECT_EQ(doubleBits(got.b), doubleBits(want.b));
    EXPECT_EQ(doubleBits(got.a), doubleBits(want.a));
}

/// True when `value` is a float widened to double.
bool isFloat(double value) { return static_cast<double>(static_cast<float>(value)) == value; }

float mul(float a, float b) { return static_cast<float>(static_cast<double>(a) * static_cast<double>(b)); }
float add(float a, float b) { return static_cast<float>(static_cast<double>(a) + static_cast<double>(b)); }
float sub(float a, float b) { return static_cast<float>(static_cast<double>(a) - static_cast<double>(b)); }
float powRounded(float base, float exponent)
{
    return static_cast<float>(std::pow(static_cast<double>(base), static_cast<double>(exponent)));
}

// Power-segment values of the curves' formulas with the power correctly
// rounded; the module's powf may differ from it by one unit.
float srgbDecodePower(float x) { return powRounded(mul(add(x, 0.055f), 0.94786733f), 2.4f); }
float rec709DecodePower(float x) { return powRounded(mul(add(x, 0.099f), 0.90991813f), 2.2222223f); }
float srgbEncodePowerPart(float x) { return powRounded(x, 0.41666666f); }
float rec709EncodePowerPart(float x) { return powRounded(x, 0.45f); }

/// A decoding result: a float, within one unit of the correctly rounded
/// power, and near the published rounded figure.
void expectDecoded(double got, float correctlyRounded, double approx)
{
    EXPECT_TRUE(isFloat(got)) << got;
    EXPECT_LE(ulpDistance(static_cast<float>(got), correctlyRounded), 1) << got << " vs " << correctlyRounded;
    EXPECT_NEAR(got, approx, 1e-7);
}

/// An encoding result: a float equal to powf's result (checked to be
/// within one unit of the correctly rounded power) times the scale minus
/// the offset, near the published rounded figure.
void expectEncoded(double got, float x, float exponent, float scale, float offset, double approx)
{
    EXPECT_TRUE(isFloat(got)) << got;
    float const p = ::powf(x, exponent);
    EXPECT_LE(ulpDistance(p, powRounded(x, exponent)), 1);
    EXPECT_EQ(floatBits(static_cast<float>(got)), floatBits(sub(mul(p, scale), offset))) << got;
    EXPECT_NEAR(got, approx, 1e-7);
}

TEST_F(ColorTransform, SrgbDecodingOfOneHalf)
{
    Color const out = ColorConfig::transform({0.5, 0.5, 0.5, 1.0}, String("sRGB"), String("linear"));
    expectDecoded(out.r, srgbDecodePower(0.5f), 0.2140411);
    EXPECT_EQ(doubleBits(out.g), doubleBits(out.r));
    EXPECT_EQ(doubleBits(out.b), doubleBits(out.r));
    EXPECT_EQ(out.a, 1.0);
}

TEST_F(ColorTransform, SrgbEncodingOfOneHalfOneAndTwo)
{
    Color const out = ColorConfig::transform({0.5, 1.0, 2.0, 1.0}, String("linear"), String("sRGB"));
    expectEncoded(out.r, 0.5f, 0.41666666f, 1.055f, 0.055f, 0.7353569);
    EXPECT_LE(ulpDistance(static_cast<float>(out.r), sub(mul(srgbEncodePowerPart(0.5f), 1.055f), 0.055f)), 1);
    // powf(1, p) is exactly 1; 1.055f - 0.055f in single precision.
    EXPECT_EQ(out.g, 0.9999999403953552);
    // Above 1: not clamped.
    expectEncoded(out.b, 2.0f, 0.41666666f, 1.055f, 0.055f, 1.3532560);
    EXPECT_GT(out.b, 1.0);
}

TEST_F(ColorTransform, SrgbThresholdsTakeTheLinearSegment)
{
    Color const decoded = ColorConfig::transform({0.04045, 0.0, 0.0, 0.0}, String("sRGB"), String("linear"));
    EXPECT_EQ(decoded.r, 0.003130804980173707);
    Color const encoded = ColorConfig::transform({0.0031308, 0.0, 0.0, 0.0}, String("linear"), String("sRGB"));
    EXPECT_EQ(encoded.r, 0.04044993594288826);
}

TEST_F(ColorTransform, Rec709ThresholdsTakeThePowerSegment)
{
    Color const decoded = ColorConfig::transform({0.081, 0.0, 0.0, 0.0}, String("Rec709"), String("linear"));
    expectDecoded(decoded.r, rec709DecodePower(0.081f), 0.0179450);
    EXPECT_NE(static_cast<float>(decoded.r), 0.018f); // the linear segment would give 0.018
    Color const encoded = ColorConfig::transform({0.018, 0.0, 0.0, 0.0}, String("linear"), String("Rec709"));
    expectEncoded(encoded.r, 0.018f, 0.45f, 1.099f, 0.099f, 0.0812479);
    EXPECT_LE(ulpDistance(static_cast<float>(encoded.r), sub(mul(rec709EncodePowerPart(0.018f), 1.099f), 0.099f)),
              1);
    EXPECT_NE(static_cast<float>(encoded.r), 0.081f); // the linear segment would give 0.081
}

TEST_F(ColorTransform, NegativesTakeTheLinearSegment)
{
    Color const srgb = ColorConfig::linearToColorSpace({-0.5, -0.0, -2.0, 0.0}, String("sRGB"));
    EXPECT_EQ(srgb.r, -6.460000038146973);
    EXPECT_EQ(doubleBits(srgb.g), doubleBits(-0.0));
    EXPECT_EQ(srgb.b, static_cast<double>(-2.0f * 12.92f));
    Color const rec709 = ColorConfig::linearToColorSpace({-0.5, 0.0, 0.0, 0.0}, String("Rec709"));
    EXPECT_EQ(rec709.r, -2.25);
    Color const back = ColorConfig::colorSpaceToLinear({-0.5, 0.0, 0.0, 0.0}, String("sRGB"));
    EXPECT_EQ(back.r, static_cast<double>(-0.5f * 0.07739938f));
}

TEST_F(ColorTransform, NamesAreMatchedWithoutCase)
{
    Color const in{0.5, 0.25, 0.75, 1.0};
    Color const srgb = ColorConfig::transform(in, String("linear"), String("sRGB"));
    EXPECT_NE(srgb.r, 0.5);
    expectSameBits(ColorConfig::transform(in, String("LINEAR"), String("SRGB")), srgb);
    expectSameBits(ColorConfig::transform(in, String("Linear"), String("srgb")), srgb);

    Color const rec709 = ColorConfig::transform(in, String("linear"), String("Rec709"));
    EXPECT_NE(rec709.r, 0.5);
    EXPECT_NE(rec709.r, srgb.r);
    expectSameBits(ColorConfig::transform(in, String("linear"), String("rec709")), rec709);
    expectSameBits(ColorConfig::transform(in, String("lInEaR"), String("REC709")), rec709);

    Color const decoded = ColorConfig::transform(in, String("sRGB"), String("linear"));
    expectSameBits(ColorConfig::transform(in, String("SRGB"), String("LINEAR")), decoded);
    Color const decoded709 = ColorConfig::transform(in, String("Rec709"), String("linear"));
    expectSameBits(ColorConfig::transform(in, String("rec709"), String("Linear")), decoded709);
}

TEST_F(ColorTransform, ConveniencesAreTransformToAndFromLinear)
{
    Color const in{0.5, 0.04, 1.5, 0.5};
    for (char const* name : {"sRGB", "Rec709", "SRGB", "nope", "", "lnf"}) {
        expectSameBits(ColorConfig::colorSpaceToLinear(in, String(name)),
                       ColorConfig::transform(in, String(name), String("linear")));
        expectSameBits(ColorConfig::linearToColorSpace(in, String(name)),
                       ColorConfig::transform(in, String("linear"), String(name)));
    }
}

TEST_F(ColorTransform, EqualNamesReturnTheColourBitIdentical)
{
    Color const in{doubleFromBits(0x7FF4000000000123ull), doubleFromBits(0x0000000000000001ull), -0.0,
                   doubleFromBits(0xFFF80000DEADBEEFull)};
    char const* const pairs[][2] = {{"sRGB", "SRGB"}, {"linear", "LINEAR"}, {"Rec709", "rec709"},
                                    {"", ""},         {"nope", "NOPE"},     {"lnf", "lnf"}};
    for (auto const& pair : pairs) {
        SCOPED_TRACE(std::string(pair[0]) + " -> " + pair[1]);
        expectSameBits(ColorConfig::transform(in, String(pair[0]), String(pair[1])), in);
    }
}

TEST_F(ColorTransform, AlphaKeepsItsBitsOnTheCurvePath)
{
    char const* const pairs[][2] = {
        {"linear", "sRGB"}, {"sRGB", "linear"}, {"linear", "Rec709"}, {"Rec709", "linear"}};
    for (std::uint64_t alpha : kOddAlphas) {
        for (auto const& pair : pairs) {
            Color const out =
                ColorConfig::transform({0.5, 0.25, 0.75, doubleFromBits(alpha)}, String(pair[0]), String(pair[1]));
            EXPECT_NE(out.r, 0.5);
            EXPECT_EQ(doubleBits(out.a), alpha) << pair[0] << " -> " << pair[1];
        }
    }
}

TEST_F(ColorTransform, AlphaKeepsItsBitsWithANullProcessor)
{
    // Unknown names: no processor, the whole colour comes back bit for bit.
    for (std::uint64_t alpha : kOddAlphas) {
        Color const in{0.5, doubleFromBits(0x7FF0000000000001ull), -0.0, doubleFromBits(alpha)};
        expectSameBits(ColorConfig::transform(in, String("nope"), String("linear")), in);
        expectSameBits(ColorConfig::colorSpaceToLinear(in, String("nope")), in);
        expectSameBits(ColorConfig::linearToColorSpace(in, String("nope")), in);
        expectSameBits(ColorConfig::transform(in, String(""), String("linear")), in);
    }
}

// The built-in configuration has no processor between sRGB and Rec709, and
// the module does not chain its curves: the colour comes back unchanged.
TEST_F(ColorTransform, SrgbToRec709IsNotComputedByTheCurves)
{
    Color const in{0.5, 0.25, 0.75, doubleFromBits(kOddAlphas[0])};
    expectSameBits(ColorConfig::transform(in, String("srgb"), String("rec709")), in);
    expectSameBits(ColorConfig::transform(in, String("sRGB"), String("Rec709")), in);
    expectSameBits(ColorConfig::transform(in, String("Rec709"), String("sRGB")), in);
}

/// What applying the shared configuration's processor directly gives, as
/// the module's processor path does (r, g, b rounded to float).
Color applyDirectly(Color in, char const* from, char const* to)
{
    OIIO::ColorProcessorHandle const processor =
        orv::verra_sdk::colorConfig().createColorProcessor(from, to, "", "");
    EXPECT_TRUE(processor) << from << " -> " << to;
    if (!processor) {
        return in;
    }
    float rgb[3] = {static_cast<float>(in.r), static_cast<float>(in.g), static_cast<float>(in.b)};
    processor->apply(rgb, 1, 1, 3, sizeof(float), 3 * sizeof(float), 3 * sizeof(float));
    return {rgb[0], rgb[1], rgb[2], in.a};
}

// "lnf" is OpenImageIO's alias of linear but not a built-in name of the
// module: the processor path, with OpenImageIO's own (approximate) curve.
TEST_F(ColorTransform, ProcessorPathOnTheBuiltInConfiguration)
{
    for (std::uint64_t alpha : kOddAlphas) {
        Color const in{0.5, 0.2, 1.0, doubleFromBits(alpha)};
        Color const out = ColorConfig::transform(in, String("lnf"), String("sRGB"));
        expectSameBits(out, applyDirectly(in, "lnf", "sRGB"));
        EXPECT_NE(out.r, 0.5);
    }
}

TEST_F(ColorTransform, ProcessorPathWithATestConfig)
{
    verra_test::OcioConfigText text;
    text.colorSpaces = {"lin", "srgb_tex", "raw"};
    text.srgbSpaces = {"srgb_tex"};
    loadConfig(text);

    for (std::uint64_t alpha : kOddAlphas) {
        Color const in{0.5, 0.2, 1.5, doubleFromBits(alpha)};
        Color const encoded = ColorConfig::transform(in, String("lin"), String("srgb_tex"));
        expectSameBits(encoded, applyDirectly(in, "lin", "srgb_tex"));
        EXPECT_GT(encoded.r, 0.7);
        Color const decoded = ColorConfig::transform(in, String("srgb_tex"), String("lin"));
        expectSameBits(decoded, applyDirectly(in, "srgb_tex", "lin"));
        EXPECT_LT(decoded.r, 0.3);
        // Names compared without case before the processor; the processor
        // itself is asked with the caller's text.
        expectSameBits(ColorConfig::transform(in, String("LIN"), String("lin")), in);
        // A null processor from the config: unchanged.
        expectSameBits(ColorConfig::transform(in, String("lin"), String("nope")), in);
    }
}

// The built-in names use the curves whatever a loaded configuration calls
// them; other pairs of them use the configuration's processor.
TEST_F(ColorTransform, BuiltInNamesUseTheCurvesWhateverTheConfigSays)
{
    verra_test::OcioConfigText text;
    text.colorSpaces = {"linear", "srgb", "rec709"};
    text.srgbSpaces = {"rec709"}; // the config's "rec709" is an sRGB encoding, its "srgb" an identity
    loadConfig(text);

    Color const in{0.5, 0.25, 0.75, doubleFromBits(kOddAlphas[1])};
    Color const curve709 = ColorConfig::linearToColorSpace(in, String("Rec709"));
    EXPECT_NEAR(curve709.r, 0.705515, 1e-6); // Rec.709 curve, not the config's sRGB curve
    Color const curveSrgb = ColorConfig::linearToColorSpace(in, String("sRGB"));
    EXPECT_NEAR(curveSrgb.r, 0.7353569, 1e-7); // sRGB curve, not the config's identity

    Color const viaConfig = ColorConfig::transform(in, String("srgb"), String("rec709"));
    expectSameBits(viaConfig, applyDirectly(in, "srgb", "rec709"));
    EXPECT_NEAR(viaConfig.r, 0.7353569, 1e-5);
}

} // namespace
