// Tests of verra_sdk/kit/image_file.h.

#include "support/kit_env.h"

#include <verra_sdk/kit/image_file.h>
#include <verra_sdk/kit/safe_output.h>

#include <cstring>

namespace verra_test {
namespace {

using ImageFile = KitTest;

TEST_F(ImageFile, ReadsEveryImageAtItsPrecisionWithItsAlpha)
{
    writeNoise(file("a8.png"), 4, 4, T::UINT8);
    writeNoise(file("a16.png"), 4, 4, T::UINT16);
    writeNoise(file("a.exr"), 4, 4, T::HALF);
    writeNoise(file("rgb.exr"), 4, 3, T::HALF);
    // TIFF written from memory holds associated alpha.
    writeNoise(file("a.tif"), 4, 4, T::UINT8);
    OIIO::ImageBuf const part = imageOf(2, {"R", "G", "B", "A"}, Floats(16, 0.5f));
    writeParts(file("parts.exr"), {part, imageOf(2, {"Y"}, Floats(4, 0.5f))}, T::HALF);
    writeParts(file("alpha.exr"), {imageOf(1, {"A"}, {0.5f})}, T::HALF);
    ASSERT_TRUE(OIIO::ImageBufAlgo::make_texture(OIIO::ImageBufAlgo::MakeTxTexture, part, file("mip.tx"), {}));
    auto const bytes = kit::Precision::KeepBytes, floats = kit::Precision::Float;
    // The subimages, whether there are MIP levels, then each image as "subimage/level width type alpha".
    std::tuple<char const*, kit::ReadOptions, Names> const cases[] = {
        {"a8.png", {bytes}, {"1 flat", "0/0 4 uint8 straight"}},
        {"a8.png", {floats}, {"1 flat", "0/0 4 float straight"}},
        {"a16.png", {bytes}, {"1 flat", "0/0 4 float straight"}},
        {"a.exr", {bytes}, {"1 flat", "0/0 4 float associated"}},
        {"a.exr", {floats, true}, {"1 flat", "0/0 4 float straight"}},
        {"rgb.exr", {floats}, {"1 flat", "0/0 4 float straight"}},
        {"a.tif", {bytes}, {"1 flat", "0/0 4 float associated"}},
        {"alpha.exr", {floats}, {"1 flat", "0/0 1 float associated"}},
        {"parts.exr", {floats}, {"2 flat", "0/0 2 float associated", "1/0 2 float straight"}},
        {"mip.tx", {floats}, {"1 mipmapped", "0/0 2 float associated", "0/1 1 float associated"}},
    };
    for (auto const& [name, options, expected] : cases) {
        kit::ImageFile read;
        std::string error;
        ASSERT_TRUE(kit::readImageFile(file(name), options, read, error)) << name << error;
        Names got{std::to_string(read.subimages) + (read.mipmapped ? " mipmapped" : " flat")};
        for (kit::ImageLevel const& level : read.levels) {
            got.push_back(OIIO::Strutil::fmt::format("{}/{} {} {} {}", level.subimage, level.miplevel,
                                                     level.pixels.spec().width, level.pixels.spec().format.c_str(),
                                                     level.associatedAlpha ? "associated" : "straight"));
        }
        EXPECT_THAT(got, ElementsAreArray(expected)) << name;
    }
}

TEST_F(ImageFile, HalfValuesReadAndWriteBitForBit)
{
    // Every half bit pattern (signalling NaNs and denormals too), in rows that end inside a band of rows.
    OIIO::ImageBuf halves(OIIO::ImageSpec(101, 650, 1, T::HALF));
    auto* const bits = static_cast<std::uint16_t*>(halves.localpixels());
    std::size_t const count = 101 * 650;
    for (std::size_t i = 0; i < count; ++i) {
        bits[i] = static_cast<std::uint16_t>(i * 7919);
    }
    ASSERT_TRUE(halves.write(file("all.exr")));
    kit::ImageFile read;
    std::string error;
    ASSERT_TRUE(kit::readImageFile(file("all.exr"), kit::Precision::KeepBytes, read, error)) << error;
    std::vector<float> expected(count);
    OIIO::convert_pixel_values(T::HALF, bits, T::FLOAT, expected.data(), static_cast<int>(count));
    EXPECT_EQ(std::memcmp(read.levels[0].pixels.localpixels(), expected.data(), count * sizeof(float)), 0);
    ASSERT_TRUE(kit::writeImageFile(file("copy.exr"), read, error)) << error;
    OIIO::ImageBuf const copy = readImage(file("copy.exr"), 0, T::HALF);
    EXPECT_EQ(std::memcmp(copy.localpixels(), bits, count * sizeof(std::uint16_t)), 0);
}

} // namespace
} // namespace verra_test
