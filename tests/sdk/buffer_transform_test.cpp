// colorConfigGenerateRgba8 and both colorConfigTransformRgb overloads:
// the failure rows with their exact messages or their silence,
// the destination's storage, the alpha fill, results equal to OpenImageIO's
// colorconvert on copies, and no access outside the caller's memory (guard
// pages).

#include "conversion_test_support.h"

#include <verra_sdk/colorconfig.h>

#include <OpenColorIO/OpenColorIO.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <string>
#include <utility>
#include <vector>

namespace {

namespace OCIO = OCIO_NAMESPACE;
using orv::String;
using orv::verra::float3;
using orv::verra::float4;
using orv::verra::Rgba8;
using orv::verra::Vector2d;
using orv::verra_sdk::colorConfigGenerateRgba8;
using orv::verra_sdk::colorConfigTransformRgb;
using verra_test::BorrowedArray;
using verra_test::GuardedPages;
using verra_test::LogCapture;

using Lines = std::vector<std::string>;
using Float3Array = Vector2d<float3, true>;
using Float4Array = Vector2d<float4, true>;
using Rgba8Array = Vector2d<Rgba8, true>;

class BufferTransform : public verra_test::ConversionTest {};

/// A value of channel `c` of pixel `i`: spread over [-0.1, 1.3], so that
/// negatives and values above 1 occur.
float sample(std::uint32_t i, std::uint32_t c)
{
    return static_cast<float>((i * 3u + c) * 37u % 141u) / 100.0f - 0.1f;
}

void fill(float3* pixels, std::uint32_t count)
{
    for (std::uint32_t i = 0; i < count; ++i) {
        pixels[i] = float3{sample(i, 0), sample(i, 1), sample(i, 2)};
    }
}

void fill(float4* pixels, std::uint32_t count)
{
    for (std::uint32_t i = 0; i < count; ++i) {
        pixels[i] = float4{sample(i, 0), sample(i, 1), sample(i, 2), sample(i, 3) + 0.1f};
    }
}

void fill(Rgba8* pixels, std::uint32_t count)
{
    for (std::uint32_t i = 0; i < count; ++i) {
        pixels[i] = Rgba8{static_cast<std::uint8_t>(i * 7u), static_cast<std::uint8_t>(i * 13u + 5u),
                          static_cast<std::uint8_t>(i * 29u + 11u), static_cast<std::uint8_t>(i * 3u + 1u)};
    }
}

template <class T>
Vector2d<T, true> makeArray(std::uint32_t width, std::uint32_t height)
{
    Vector2d<T, true> array;
    array.allocate(width, height);
    EXPECT_EQ(array.count, width * height);
    fill(array.data, array.count);
    return array;
}

/// The bytes of `count` pixels at `pixels`.
template <class T>
std::vector<std::uint8_t> bytesOf(T const* pixels, std::uint32_t count)
{
    auto const* first = reinterpret_cast<std::uint8_t const*>(pixels);
    return std::vector<std::uint8_t>(first, first + std::size_t{count} * sizeof(T));
}

template <class T>
std::vector<std::uint8_t> bytesOf(Vector2d<T, true> const& array)
{
    return bytesOf(array.data, array.count);
}

/// The colour bytes (r, g, b) of RGBA8 pixels.
std::vector<std::uint8_t> colourBytes(Rgba8 const* pixels, std::uint32_t count)
{
    std::vector<std::uint8_t> bytes;
    for (std::uint32_t i = 0; i < count; ++i) {
        bytes.insert(bytes.end(), {pixels[i].r, pixels[i].g, pixels[i].b});
    }
    return bytes;
}

bool allAlpha255(Rgba8 const* pixels, std::uint32_t count)
{
    for (std::uint32_t i = 0; i < count; ++i) {
        if (pixels[i].a != 255) {
            return false;
        }
    }
    return true;
}

int asInt(std::uint32_t value) { return static_cast<int>(value); }

/// The reference for colorConfigGenerateRgba8's colour bytes: colorconvert
/// from "linear" to `to` of a copy of the float RGB source into a separate
/// 3-channel UINT8 destination over the whole region. That is the module's
/// conversion (OpenImageIO's own float-to-UINT8 conversion, no curve or
/// quantisation of the module's) minus the fourth channel, which the module
/// overwrites with 255 anyway and which OpenImageIO 2.4.7 would fill from
/// past the end of the source.
std::vector<std::uint8_t> referenceRgb8(float3 const* source, std::uint32_t width, std::uint32_t height,
                                        char const* to)
{
    std::vector<float3> const copy(source, source + std::size_t{width} * height);
    std::vector<std::uint8_t> out(std::size_t{width} * height * 3u, 0);
    EXPECT_TRUE(verra_test::referenceConvert(out.data(), 3, OIIO::TypeDesc::UINT8, copy.data(), 3,
                                             OIIO::TypeDesc::FLOAT, asInt(width), asInt(height), "linear", to));
    return out;
}

/// colorconvert from "linear" to `to` of a copy of a float RGB source into a
/// float RGB destination, both wrapped as the module wraps them.
std::vector<std::uint8_t> referenceRgb(float3 const* source, std::uint32_t width, std::uint32_t height,
                                       char const* to)
{
    std::vector<float3> const copy(source, source + std::size_t{width} * height);
    std::vector<float3> out(copy.size(), float3{-7.0f, -7.0f, -7.0f});
    EXPECT_TRUE(verra_test::referenceConvert(out.data(), 3, OIIO::TypeDesc::FLOAT, copy.data(), 3,
                                             OIIO::TypeDesc::FLOAT, asInt(width), asInt(height), "linear", to));
    return bytesOf(out.data(), static_cast<std::uint32_t>(out.size()));
}

/// colorconvert in place from "linear" to `to` of a copy of a float RGBA
/// buffer, one wrapper as source and destination, as the module does.
std::vector<std::uint8_t> referenceRgba(float4 const* pixels, std::uint32_t width, std::uint32_t height,
                                        char const* to)
{
    std::vector<float4> copy(pixels, pixels + std::size_t{width} * height);
    EXPECT_TRUE(verra_test::referenceConvert(copy.data(), 4, OIIO::TypeDesc::FLOAT, copy.data(), 4,
                                             OIIO::TypeDesc::FLOAT, asInt(width), asInt(height), "linear", to));
    return bytesOf(copy.data(), static_cast<std::uint32_t>(copy.size()));
}

void markConfigUntouched() { OCIO::SetLoggingLevel(OCIO::LOGGING_LEVEL_INFO); }
bool configTouched() { return OCIO::GetLoggingLevel() == OCIO::LOGGING_LEVEL_NONE; }

// ---------------------------------------------------------------------------
// colorConfigGenerateRgba8
// ---------------------------------------------------------------------------

TEST_F(BufferTransform, GenerateRgba8GivesAnEmptyDestinationStorageAndOpaqueAlpha)
{
    Float3Array const source = makeArray<float3>(13, 7);
    for (char const* name : {"sRGB", "Rec709"}) {
        SCOPED_TRACE(name);
        Rgba8Array destination;
        LogCapture const log;
        EXPECT_TRUE(colorConfigGenerateRgba8(source, destination, String(name)));
        ASSERT_NE(destination.data, nullptr);
        EXPECT_EQ(destination.width, 13u);
        EXPECT_EQ(destination.height, 7u);
        EXPECT_EQ(destination.count, 91u);
        EXPECT_EQ(colourBytes(destination.data, 91), referenceRgb8(source.data, 13, 7, name));
        EXPECT_TRUE(allAlpha255(destination.data, 91));
        EXPECT_EQ(log.lines(), Lines{});
    }
}

TEST_F(BufferTransform, GenerateRgba8WritesAnExistingDestinationOfTheSameSize)
{
    Float3Array const source = makeArray<float3>(16, 4);
    Rgba8Array destination = makeArray<Rgba8>(16, 4);
    Rgba8* const storage = destination.data;
    LogCapture const log;
    EXPECT_TRUE(colorConfigGenerateRgba8(source, destination, String("sRGB")));
    EXPECT_EQ(destination.data, storage);
    EXPECT_EQ(colourBytes(destination.data, 64), referenceRgb8(source.data, 16, 4, "sRGB"));
    EXPECT_TRUE(allAlpha255(destination.data, 64));
    EXPECT_EQ(log.lines(), Lines{});
}

TEST_F(BufferTransform, GenerateRgba8WithAnEmptyNameConvertsToSrgb)
{
    Float3Array const source = makeArray<float3>(9, 5);
    Rgba8Array destination;
    LogCapture const log;
    EXPECT_TRUE(colorConfigGenerateRgba8(source, destination, String()));
    std::vector<std::uint8_t> const srgb = referenceRgb8(source.data, 9, 5, "sRGB");
    EXPECT_EQ(colourBytes(destination.data, 45), srgb);
    EXPECT_NE(srgb, referenceRgb8(source.data, 9, 5, "Rec709"));
    EXPECT_TRUE(allAlpha255(destination.data, 45));
    EXPECT_EQ(log.lines(), Lines{});
}

// "linear" is not a shortcut: the bytes are what the processor and
// OpenImageIO's float-to-UINT8 conversion give, written over the old ones.
TEST_F(BufferTransform, GenerateRgba8ToLinearGoesThroughTheProcessor)
{
    Float3Array const source = makeArray<float3>(9, 5);
    Rgba8Array destination = makeArray<Rgba8>(9, 5);
    std::vector<std::uint8_t> const before = colourBytes(destination.data, 45);
    std::vector<std::uint8_t> const want = referenceRgb8(source.data, 9, 5, "linear");
    ASSERT_NE(want, before);
    LogCapture const log;
    EXPECT_TRUE(colorConfigGenerateRgba8(source, destination, String("linear")));
    EXPECT_EQ(colourBytes(destination.data, 45), want);
    EXPECT_TRUE(allAlpha255(destination.data, 45));
    EXPECT_EQ(log.lines(), Lines{});
}

TEST_F(BufferTransform, GenerateRgba8KeepsADestinationOfAnotherSize)
{
    Float3Array const source = makeArray<float3>(13, 7);
    using Size = std::pair<std::uint32_t, std::uint32_t>;
    for (Size const& size : {Size{5, 5}, Size{13, 8}, Size{14, 7}, Size{7, 13}, Size{0, 7}, Size{13, 0}}) {
        SCOPED_TRACE(std::to_string(size.first) + " x " + std::to_string(size.second));
        Rgba8Array destination = makeArray<Rgba8>(size.first, size.second);
        Rgba8* const storage = destination.data;
        std::vector<std::uint8_t> const before = bytesOf(destination);
        LogCapture const log;
        EXPECT_FALSE(colorConfigGenerateRgba8(source, destination, String("sRGB")));
        EXPECT_EQ(destination.data, storage);
        EXPECT_EQ(destination.width, size.first);
        EXPECT_EQ(destination.height, size.second);
        EXPECT_EQ(destination.count, size.first * size.second);
        EXPECT_EQ(bytesOf(destination), before);
        EXPECT_EQ(log.lines(), Lines{});
    }
}

// The empty destination is given storage first (of zero pixels here), then
// the sizes are rejected.
TEST_F(BufferTransform, GenerateRgba8WithAZeroSizedSourceAllocatesThenFails)
{
    for (auto const& size : {std::pair<std::uint32_t, std::uint32_t>{0, 7}, {7, 0}, {0, 0}}) {
        SCOPED_TRACE(std::to_string(size.first) + " x " + std::to_string(size.second));
        Float3Array const source = makeArray<float3>(size.first, size.second);
        Rgba8Array destination;
        LogCapture const log;
        EXPECT_FALSE(colorConfigGenerateRgba8(source, destination, String("sRGB")));
        EXPECT_NE(destination.data, nullptr);
        EXPECT_EQ(destination.width, size.first);
        EXPECT_EQ(destination.height, size.second);
        EXPECT_EQ(destination.count, 0u);
        EXPECT_EQ(log.lines(), Lines{});
    }
    // A source with no storage at all: the same.
    Float3Array const none;
    Rgba8Array destination;
    EXPECT_FALSE(colorConfigGenerateRgba8(none, destination, String("sRGB")));
    EXPECT_NE(destination.data, nullptr);
    EXPECT_EQ(destination.count, 0u);
}

TEST_F(BufferTransform, GenerateRgba8WithAnUnknownNameKeepsTheColourAndSetsAlpha)
{
    Float3Array const source = makeArray<float3>(13, 7);
    Rgba8Array destination = makeArray<Rgba8>(13, 7);
    std::vector<std::uint8_t> const before = colourBytes(destination.data, 91);
    ASSERT_FALSE(allAlpha255(destination.data, 91));
    {
        LogCapture const log;
        EXPECT_FALSE(colorConfigGenerateRgba8(source, destination, String("nope")));
        EXPECT_EQ(log.lines(), Lines{"Cannot convert from 'linear' to 'nope'."});
    }
    EXPECT_EQ(colourBytes(destination.data, 91), before);
    EXPECT_TRUE(allAlpha255(destination.data, 91));

    // With a destination it had to allocate: sizes set, alpha 255 (the
    // colour bytes are indeterminate).
    Rgba8Array fresh;
    LogCapture const log;
    EXPECT_FALSE(colorConfigGenerateRgba8(source, fresh, String("Rec 709")));
    EXPECT_EQ(log.lines(), Lines{"Cannot convert from 'linear' to 'Rec 709'."});
    ASSERT_NE(fresh.data, nullptr);
    EXPECT_EQ(fresh.count, 91u);
    EXPECT_TRUE(allAlpha255(fresh.data, 91));
}

// OpenImageIO 2.4.7, asked to convert a 3-channel float source into a
// 4-channel UINT8 destination over all channels, reads a fourth float per
// pixel: 4 bytes past the end of the source at the last pixel. A source that
// ends at an inaccessible page would kill the process.
TEST_F(BufferTransform, GenerateRgba8ReadsNothingPastTheSource)
{
    for (auto const& size : {std::pair<std::uint32_t, std::uint32_t>{1, 1}, {7, 3}, {400, 3}}) {
        SCOPED_TRACE(std::to_string(size.first) + " x " + std::to_string(size.second));
        std::uint32_t const count = size.first * size.second;
        std::size_t const bytes = std::size_t{count} * sizeof(float3);
        GuardedPages const pages(bytes);
        ASSERT_TRUE(pages.ok());
        for (void* place : {pages.atEnd(bytes), pages.atStart()}) {
            auto* pixels = static_cast<float3*>(place);
            fill(pixels, count);
            BorrowedArray<float3> const source(pixels, size.first, size.second);
            Rgba8Array destination;
            LogCapture const log;
            EXPECT_TRUE(colorConfigGenerateRgba8(source.array, destination, String("sRGB")));
            EXPECT_EQ(colourBytes(destination.data, count), referenceRgb8(pixels, size.first, size.second, "sRGB"));
            EXPECT_TRUE(allAlpha255(destination.data, count));
            EXPECT_EQ(log.lines(), Lines{});
        }
    }
}

TEST_F(BufferTransform, GenerateRgba8WritesNothingPastTheDestination)
{
    std::uint32_t const width = 300;
    std::uint32_t const height = 5;
    std::uint32_t const count = width * height;
    Float3Array const source = makeArray<float3>(width, height);
    std::size_t const bytes = std::size_t{count} * sizeof(Rgba8);
    GuardedPages const pages(bytes);
    ASSERT_TRUE(pages.ok());
    for (void* place : {pages.atEnd(bytes), pages.atStart()}) {
        auto* pixels = static_cast<Rgba8*>(place);
        fill(pixels, count);
        BorrowedArray<Rgba8> destination(pixels, width, height);
        EXPECT_TRUE(colorConfigGenerateRgba8(source, destination.array, String("Rec709")));
        EXPECT_EQ(colourBytes(pixels, count), referenceRgb8(source.data, width, height, "Rec709"));
        EXPECT_TRUE(allAlpha255(pixels, count));
    }
}

// Whatever a loaded configuration lacks, the empty name means "sRGB"; when
// the configuration has no processor for it the message names "sRGB".
// OpenImageIO 2.4.7 keeps its built-in linear-to-sRGB processor beside any
// config, so with it the conversion succeeds.
TEST_F(BufferTransform, EmptyNameMeansSrgbWithAConfigWithoutSrgb)
{
    verra_test::OcioConfigText text;
    text.colorSpaces = {"linear", "srgb_tex"};
    text.srgbSpaces = {"srgb_tex"};
    loadConfig(text);
    Float3Array const source = makeArray<float3>(8, 8);
    Rgba8Array destination;
    LogCapture const log;
    bool const ok = colorConfigGenerateRgba8(source, destination, String(""));
    if (orv::verra_sdk::colorConfig().createColorProcessor("linear", "sRGB", "", "")) {
        EXPECT_TRUE(ok);
        EXPECT_EQ(colourBytes(destination.data, 64), referenceRgb8(source.data, 8, 8, "sRGB"));
        EXPECT_EQ(log.lines(), Lines{});
    } else {
        EXPECT_FALSE(ok);
        EXPECT_EQ(log.lines(), Lines{"Cannot convert from 'linear' to 'sRGB'."});
    }
    EXPECT_TRUE(allAlpha255(destination.data, 64));
}

TEST_F(BufferTransform, ConversionsThroughATestConfigEqualColorconvertOnCopies)
{
    verra_test::OcioConfigText text;
    text.colorSpaces = {"linear", "srgb_tex"};
    text.srgbSpaces = {"srgb_tex"};
    loadConfig(text);
    LogCapture const log;

    Float3Array const source = makeArray<float3>(11, 6);
    Rgba8Array rgba8;
    EXPECT_TRUE(colorConfigGenerateRgba8(source, rgba8, String("srgb_tex")));
    EXPECT_EQ(colourBytes(rgba8.data, 66), referenceRgb8(source.data, 11, 6, "srgb_tex"));
    EXPECT_TRUE(allAlpha255(rgba8.data, 66));

    Float3Array rgb = makeArray<float3>(11, 6);
    EXPECT_TRUE(colorConfigTransformRgb(source, rgb, String("srgb_tex")));
    EXPECT_EQ(bytesOf(rgb), referenceRgb(source.data, 11, 6, "srgb_tex"));

    Float4Array rgba = makeArray<float4>(11, 6);
    std::vector<std::uint8_t> const want = referenceRgba(rgba.data, 11, 6, "srgb_tex");
    EXPECT_TRUE(colorConfigTransformRgb(rgba, String("srgb_tex")));
    EXPECT_EQ(bytesOf(rgba), want);

    EXPECT_EQ(log.lines(), Lines{});

    // A name the config does not know.
    LogCapture const failures;
    Float4Array untouched = makeArray<float4>(3, 2);
    std::vector<std::uint8_t> const before = bytesOf(untouched);
    EXPECT_FALSE(colorConfigTransformRgb(untouched, String("lin")));
    EXPECT_EQ(failures.lines(), Lines{"Cannot convert from 'linear' to 'lin'."});
    EXPECT_EQ(bytesOf(untouched), before);
}

// ---------------------------------------------------------------------------
// colorConfigTransformRgb, float RGB
// ---------------------------------------------------------------------------

TEST_F(BufferTransform, TransformRgbEqualsColorconvertOnCopies)
{
    Float3Array const source = makeArray<float3>(17, 5);
    std::vector<std::uint8_t> const sourceBytes = bytesOf(source);
    for (char const* name : {"sRGB", "Rec709", "linear", ""}) {
        SCOPED_TRACE(name);
        Float3Array destination;
        destination.allocate(17, 5);
        std::fill(destination.data, destination.data + destination.count, float3{-7.0f, -7.0f, -7.0f});
        LogCapture const log;
        EXPECT_TRUE(colorConfigTransformRgb(source, destination, String(name)));
        char const* const target = *name != '\0' ? name : "sRGB";
        EXPECT_EQ(bytesOf(destination), referenceRgb(source.data, 17, 5, target));
        EXPECT_EQ(bytesOf(source), sourceBytes); // the source is only read
        EXPECT_EQ(log.lines(), Lines{});
    }
    // "linear" copies the values (through the processor), "" is "sRGB".
    Float3Array linear = makeArray<float3>(17, 5);
    EXPECT_TRUE(colorConfigTransformRgb(source, linear, String("linear")));
    EXPECT_EQ(bytesOf(linear), sourceBytes);
}

TEST_F(BufferTransform, TransformRgbRejectsSizesThatDoNotFitSilently)
{
    using Size = std::pair<std::uint32_t, std::uint32_t>;
    struct Case {
        Size source;
        Size destination;
    };
    Case const cases[] = {{{8, 4}, {4, 8}}, {{8, 4}, {8, 5}}, {{8, 4}, {9, 4}}, {{8, 4}, {0, 4}},
                          {{8, 4}, {8, 0}}, {{0, 4}, {0, 4}}, {{8, 0}, {8, 0}}, {{0, 4}, {8, 4}}};
    for (Case const& c : cases) {
        SCOPED_TRACE(std::to_string(c.source.first) + "x" + std::to_string(c.source.second) + " -> " +
                     std::to_string(c.destination.first) + "x" + std::to_string(c.destination.second));
        Float3Array const source = makeArray<float3>(c.source.first, c.source.second);
        Float3Array destination = makeArray<float3>(c.destination.first, c.destination.second);
        float3* const storage = destination.data;
        std::vector<std::uint8_t> const before = bytesOf(destination);
        LogCapture const log;
        EXPECT_FALSE(colorConfigTransformRgb(source, destination, String("sRGB")));
        EXPECT_EQ(destination.data, storage);
        EXPECT_EQ(destination.width, c.destination.first);
        EXPECT_EQ(destination.height, c.destination.second);
        EXPECT_EQ(bytesOf(destination), before);
        EXPECT_EQ(log.lines(), Lines{});
    }
    // A destination without storage is not given any.
    Float3Array const source = makeArray<float3>(8, 4);
    Float3Array empty;
    LogCapture const log;
    EXPECT_FALSE(colorConfigTransformRgb(source, empty, String("sRGB")));
    EXPECT_EQ(empty.data, nullptr);
    EXPECT_EQ(log.lines(), Lines{});
}

TEST_F(BufferTransform, TransformRgbWithAnUnknownNameLeavesTheDestinationUntouched)
{
    Float3Array const source = makeArray<float3>(8, 4);
    Float3Array destination = makeArray<float3>(8, 4);
    std::fill(destination.data, destination.data + destination.count, float3{-7.0f, 0.5f, 9.0f});
    std::vector<std::uint8_t> const before = bytesOf(destination);
    LogCapture const log;
    EXPECT_FALSE(colorConfigTransformRgb(source, destination, String("nope")));
    EXPECT_EQ(log.lines(), Lines{"Cannot convert from 'linear' to 'nope'."});
    EXPECT_EQ(bytesOf(destination), before);
}

TEST_F(BufferTransform, TransformRgbStaysInsideBothBuffers)
{
    std::uint32_t const width = 250;
    std::uint32_t const height = 3;
    std::uint32_t const count = width * height;
    std::size_t const bytes = std::size_t{count} * sizeof(float3);
    GuardedPages const sourcePages(bytes);
    GuardedPages const destinationPages(bytes);
    ASSERT_TRUE(sourcePages.ok() && destinationPages.ok());
    std::pair<void*, void*> const places[] = {{sourcePages.atEnd(bytes), destinationPages.atEnd(bytes)},
                                             {sourcePages.atStart(), destinationPages.atStart()}};
    for (auto const& place : places) {
        auto* sourcePixels = static_cast<float3*>(place.first);
        auto* destinationPixels = static_cast<float3*>(place.second);
        fill(sourcePixels, count);
        BorrowedArray<float3> const source(sourcePixels, width, height);
        BorrowedArray<float3> destination(destinationPixels, width, height);
        LogCapture const log;
        EXPECT_TRUE(colorConfigTransformRgb(source.array, destination.array, String("sRGB")));
        EXPECT_EQ(bytesOf(destinationPixels, count), referenceRgb(sourcePixels, width, height, "sRGB"));
        EXPECT_EQ(log.lines(), Lines{});
    }
}

// ---------------------------------------------------------------------------
// colorConfigTransformRgb, float RGBA in place
// ---------------------------------------------------------------------------

TEST_F(BufferTransform, TransformRgbaInPlaceEqualsColorconvertOnACopy)
{
    for (char const* name : {"sRGB", "Rec709", "linear", ""}) {
        SCOPED_TRACE(name);
        Float4Array pixels = makeArray<float4>(19, 3);
        float4* const storage = pixels.data;
        char const* const target = *name != '\0' ? name : "sRGB";
        std::vector<std::uint8_t> const want = referenceRgba(pixels.data, 19, 3, target);
        LogCapture const log;
        EXPECT_TRUE(colorConfigTransformRgb(pixels, String(name)));
        EXPECT_EQ(pixels.data, storage);
        EXPECT_EQ(bytesOf(pixels), want);
        EXPECT_EQ(log.lines(), Lines{});
    }
}

TEST_F(BufferTransform, TransformRgbaRejectsAZeroSizeSilently)
{
    for (auto const& size : {std::pair<std::uint32_t, std::uint32_t>{0, 4}, {4, 0}, {0, 0}}) {
        Float4Array pixels = makeArray<float4>(size.first, size.second);
        float4* const storage = pixels.data;
        LogCapture const log;
        EXPECT_FALSE(colorConfigTransformRgb(pixels, String("sRGB")));
        EXPECT_EQ(pixels.data, storage);
        EXPECT_EQ(pixels.width, size.first);
        EXPECT_EQ(pixels.height, size.second);
        EXPECT_EQ(log.lines(), Lines{});
    }
    Float4Array none;
    LogCapture const log;
    EXPECT_FALSE(colorConfigTransformRgb(none, String("sRGB")));
    EXPECT_EQ(log.lines(), Lines{});
}

TEST_F(BufferTransform, TransformRgbaWithAnUnknownNameLeavesThePixelsUntouched)
{
    Float4Array pixels = makeArray<float4>(6, 6);
    std::vector<std::uint8_t> const before = bytesOf(pixels);
    LogCapture const log;
    EXPECT_FALSE(colorConfigTransformRgb(pixels, String("nope")));
    EXPECT_EQ(log.lines(), Lines{"Cannot convert from 'linear' to 'nope'."});
    EXPECT_EQ(bytesOf(pixels), before);
}

TEST_F(BufferTransform, TransformRgbaStaysInsideTheBuffer)
{
    std::uint32_t const width = 333;
    std::uint32_t const height = 2;
    std::uint32_t const count = width * height;
    std::size_t const bytes = std::size_t{count} * sizeof(float4);
    GuardedPages const pages(bytes);
    ASSERT_TRUE(pages.ok());
    for (void* place : {pages.atEnd(bytes), pages.atStart()}) {
        auto* pixels = static_cast<float4*>(place);
        fill(pixels, count);
        std::vector<std::uint8_t> const want = referenceRgba(pixels, width, height, "Rec709");
        BorrowedArray<float4> buffer(pixels, width, height);
        EXPECT_TRUE(colorConfigTransformRgb(buffer.array, String("Rec709")));
        EXPECT_EQ(bytesOf(pixels, count), want);
    }
}

// "linear" to "linear" is an identity, but it still obtains the shared
// configuration and asks it for a processor (no shortcut).
TEST_F(BufferTransform, LinearTargetObtainsTheConfiguration)
{
    if (!firstInProcess()) {
        GTEST_SKIP() << "needs a fresh process (run it through CTest)";
    }
    markConfigUntouched();
    ASSERT_FALSE(configTouched());
    Float4Array pixels = makeArray<float4>(4, 4);
    std::vector<std::uint8_t> const before = bytesOf(pixels);
    LogCapture const log;
    EXPECT_TRUE(colorConfigTransformRgb(pixels, String("linear")));
    EXPECT_TRUE(configTouched());
    EXPECT_EQ(bytesOf(pixels), before);
    EXPECT_EQ(log.lines(), Lines{});
}

} // namespace
