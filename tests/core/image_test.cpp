#include <orv/verra_sdk/image.h>

#include <gtest/gtest.h>

namespace {

using orv::verra_sdk::Image;

TEST(Image, DefaultImageIsInvalid)
{
    Image const image;
    EXPECT_FALSE(image.isValid());
    EXPECT_EQ(image.width(), 0);
    EXPECT_EQ(image.height(), 0);
    EXPECT_EQ(image.rgba8(), nullptr);
}

TEST(Image, CreateGivesZeroedPixelsOfTheGivenSize)
{
    Image const image = Image::create(7, 3);
    ASSERT_TRUE(image.isValid());
    EXPECT_EQ(image.width(), 7);
    EXPECT_EQ(image.height(), 3);
    ASSERT_NE(image.rgba8(), nullptr);
    for (int i = 0; i < 7 * 3; ++i) {
        auto const& pixel = image.rgba8()[i];
        EXPECT_EQ(pixel.r | pixel.g | pixel.b | pixel.a, 0) << "pixel " << i;
    }
}

TEST(Image, CopiesShareThePixels)
{
    Image first = Image::create(2, 2);
    Image const second = first;
    first.rgba8()[3] = orv::verra::Rgba8{10, 20, 30, 255};
    EXPECT_EQ(second.rgba8(), first.rgba8());
    EXPECT_EQ(second.rgba8()[3].g, 20);
    first = Image();
    EXPECT_TRUE(second.isValid());
    EXPECT_EQ(second.rgba8()[3].a, 255);
}

TEST(Image, NegativeOrOversizedImagesAreInvalid)
{
    EXPECT_FALSE(Image::create(-1, 4).isValid());
    EXPECT_FALSE(Image::create(4, -1).isValid());
    EXPECT_FALSE(Image::create(65536, 65536).isValid());
    EXPECT_FALSE(Image::create(65536, 65536).hasBody());
}

TEST(Image, ZeroSizedImageIsValidAndEmpty)
{
    Image const image = Image::create(0, 5);
    EXPECT_TRUE(image.isValid());
    EXPECT_NE(image.rgba8(), nullptr);
    EXPECT_EQ(image.width(), 0);
    EXPECT_EQ(image.height(), 5);
}

} // namespace
