// Storage placement of the owning pixel array. The pixel layouts themselves
// are checked at compile time in the header.

#include <orv/verra/pixel.h>
#include <orv/verra/vector2d.h>

#include <gtest/gtest.h>

#include <cstdint>
#include <new>
#include <utility>

namespace {

using orv::verra::Rgba8;
using Pixels = orv::verra::Vector2d<Rgba8, true>;

/// A one-byte pixel whose array allocation records its size and fails, so
/// that the largest allowed request can be observed without making it.
struct RefusedPixel {
    static inline std::size_t lastRequest = 0;
    static inline int requests = 0;
    std::uint8_t value;

    static void* operator new[](std::size_t bytes)
    {
        lastRequest = bytes;
        ++requests;
        throw std::bad_alloc();
    }
    static void operator delete[](void* memory) noexcept { ::operator delete[](memory); }
};

TEST(Vector2d, AllocateSetsStorageAndSizes)
{
    Pixels pixels;
    EXPECT_TRUE(pixels.empty());
    pixels.allocate(3, 2);
    ASSERT_NE(pixels.data, nullptr);
    EXPECT_EQ(pixels.width, 3u);
    EXPECT_EQ(pixels.height, 2u);
    EXPECT_EQ(pixels.count, 6u);
    pixels(2, 1) = Rgba8{1, 2, 3, 4};
    EXPECT_EQ(pixels.data[1 * 3 + 2].b, 3);
}

TEST(Vector2d, AllocateOfZeroPixelsGivesStorageButNoCount)
{
    Pixels pixels;
    pixels.allocate(0, 5);
    EXPECT_NE(pixels.data, nullptr);
    EXPECT_EQ(pixels.width, 0u);
    EXPECT_EQ(pixels.height, 5u);
    EXPECT_EQ(pixels.count, 0u);
}

TEST(Vector2d, AllocateAbove32BitCountStaysEmpty)
{
    Pixels pixels;
    pixels.allocate(4, 4);
    pixels.allocate(65536, 65536);
    EXPECT_EQ(pixels.data, nullptr);
    EXPECT_EQ(pixels.width, 0u);
    EXPECT_EQ(pixels.height, 0u);
    EXPECT_EQ(pixels.count, 0u);

    RefusedPixel::requests = 0;
    orv::verra::Vector2d<RefusedPixel, true> refused;
    refused.allocate(65536, 65536);
    EXPECT_EQ(RefusedPixel::requests, 0); // rejected before any allocation
}

TEST(Vector2d, AllocateAtTheLargestCountTriesAndSurvivesFailure)
{
    RefusedPixel::requests = 0;
    orv::verra::Vector2d<RefusedPixel, true> pixels;
    pixels.allocate(65535, 65537);
    EXPECT_EQ(RefusedPixel::requests, 1);
    EXPECT_EQ(RefusedPixel::lastRequest, 4294967295u);
    EXPECT_EQ(pixels.data, nullptr);
    EXPECT_EQ(pixels.width, 0u);
    EXPECT_EQ(pixels.height, 0u);
    EXPECT_EQ(pixels.count, 0u);
}

TEST(Vector2d, MoveLeavesTheSourceEmpty)
{
    Pixels source;
    source.allocate(2, 2);
    Rgba8 const* const storage = source.data;
    Pixels target(std::move(source));
    EXPECT_EQ(target.data, storage);
    EXPECT_EQ(target.count, 4u);
    EXPECT_TRUE(source.empty()); // NOLINT(bugprone-use-after-move): a moved-from array is left empty
    EXPECT_EQ(source.count, 0u);

    Pixels other;
    other.allocate(1, 1);
    other = std::move(target);
    EXPECT_EQ(other.data, storage);
    EXPECT_TRUE(target.empty()); // NOLINT(bugprone-use-after-move)
}

} // namespace
