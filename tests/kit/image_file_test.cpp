// Tests of verra_sdk/kit/image_file.h.

#include "support/images.h"
#include "support/kit_env.h"

#include <verra_sdk/kit/image_file.h>

#include <OpenImageIO/deepdata.h>

namespace verra_test {
namespace {

namespace kit = orv::verra_sdk::kit;
using ::testing::ElementsAreArray;
using ::testing::IsEmpty;
using T = OIIO::TypeDesc;
using ImageFile = KitTest;

TEST_F(ImageFile, FormatsFollowTheExtension)
{
    struct Case {
        char const *path, *format;
        bool bytes;
    } const cases[] = {
        {"a.png", "png", true},  {"dir.exr/b.EXR", "openexr", false},
        {"c.tif", "tiff", true}, {"e.tga", "targa", true},
        {"f.hdr", "hdr", false}, {"g.pngx", "", true},
        {"png", "", true},
    };
    for (Case const& c : cases) {
        EXPECT_EQ(kit::formatForPath(c.path), c.format) << c.path;
        EXPECT_EQ(kit::formatStoresBytes(c.format), c.bytes) << c.path;
    }
}

TEST_F(ImageFile, ReadsEveryImageAtItsPrecisionWithItsAlpha)
{
    writeNoise(file("a8.png"), 4, 4, T::UINT8);
    writeNoise(file("a16.png"), 4, 4, T::UINT16);
    writeNoise(file("grey.png"), 4, 1, T::UINT8);
    writeNoise(file("a.exr"), 4, 4, T::HALF);
    writeNoise(file("rgb.exr"), 4, 3, T::HALF);
    // TIFF says which alpha it holds: associated as written from memory, or marked straight.
    writeNoise(file("associated.tif"), 4, 4, T::UINT8);
    writeParts(file("straight.tif"), {imageOf(1, {"R", "G", "B", "A"}, {0, 0, 0, 0})}, T::UINT8);
    OIIO::ImageBuf const part = imageOf(2, {"R", "G", "B", "A"}, Floats(16, 0.5f));
    writeParts(file("parts.exr"), {part, imageOf(2, {"Y"}, Floats(4, 0.5f))}, T::HALF);
    writeParts(file("alpha.exr"), {imageOf(1, {"A"}, {0.5f})}, T::HALF);
    ASSERT_TRUE(OIIO::ImageBufAlgo::make_texture(OIIO::ImageBufAlgo::MakeTxTexture, part, file("mip.tx"), {}));
    auto const bytes = kit::Precision::KeepBytes;
    auto const floats = kit::Precision::Float;
    // The subimages, whether there are MIP levels, then each image as "subimage/level width type alpha".
    struct Case {
        char const* name;
        kit::ReadOptions options;
        Names read;
    } const cases[] = {
        {"a8.png", {bytes}, {"1 flat", "0/0 4 uint8 straight"}},
        {"a8.png", {floats}, {"1 flat", "0/0 4 float straight"}},
        {"a16.png", {bytes}, {"1 flat", "0/0 4 float straight"}},
        {"grey.png", {bytes}, {"1 flat", "0/0 4 uint8 straight"}},
        {"a.exr", {bytes}, {"1 flat", "0/0 4 float associated"}},
        {"a.exr", {floats, true}, {"1 flat", "0/0 4 float straight"}},
        {"rgb.exr", {floats}, {"1 flat", "0/0 4 float straight"}},
        {"associated.tif", {bytes}, {"1 flat", "0/0 4 float associated"}},
        {"associated.tif", {bytes, true}, {"1 flat", "0/0 4 uint8 straight"}},
        {"straight.tif", {bytes}, {"1 flat", "0/0 1 uint8 straight"}},
        {"alpha.exr", {floats}, {"1 flat", "0/0 1 float associated"}},
        {"parts.exr", {floats}, {"2 flat", "0/0 2 float associated", "1/0 2 float straight"}},
        {"mip.tx", {floats}, {"1 mipmapped", "0/0 2 float associated", "0/1 1 float associated"}},
    };
    for (Case const& c : cases) {
        kit::ImageFile read;
        std::string error;
        ASSERT_TRUE(kit::readImageFile(file(c.name), c.options, read, error)) << c.name << error;
        Names got{std::to_string(read.subimages) + (read.mipmapped ? " mipmapped" : " flat")};
        for (kit::ImageLevel const& level : read.levels) {
            got.push_back(OIIO::Strutil::fmt::format("{}/{} {} {} {}", level.subimage, level.miplevel,
                                                     level.pixels.spec().width, level.pixels.spec().format.c_str(),
                                                     level.associatedAlpha ? "associated" : "straight"));
        }
        EXPECT_THAT(got, ElementsAreArray(c.read)) << c.name;
        EXPECT_THAT(error, IsEmpty()) << c.name;
    }
}

TEST_F(ImageFile, ReadFailuresSayWhy)
{
    m_env.dir().write("bad.exr", "not an image");
    OIIO::ImageSpec deep(2, 2, 3, T::FLOAT);
    deep.deep = true;
    auto out = OIIO::ImageOutput::create(file("deep.exr"));
    ASSERT_TRUE(out->open(file("deep.exr"), deep) && out->write_deep_image(OIIO::DeepData(deep)) && out->close());
    // The second of two subimages cut short.
    std::string const cut = file("cut.exr");
    writeParts(cut, {imageOf(2, {"Y"}, {0, 1, 2, 3}), imageOf(2, {"Y"}, {0, 1, 2, 3})}, T::HALF);
    std::filesystem::resize_file(cut, std::filesystem::file_size(cut) - 8);
    struct Case {
        std::string name;
        ::testing::Matcher<std::string> message;
    } const cases[] = {
        {"missing.png", "Could not open file \"" + file("missing.png") + "\""},
        {"bad.exr", "\"" + file("bad.exr") + "\" is not an OpenEXR file"},
        {"deep.exr", "deep images are not supported"},
        // What OpenEXR says, after which subimage.
        {"cut.exr", ::testing::StartsWith("subimage 1: Failed OpenEXR read: ")},
    };
    for (Case const& c : cases) {
        kit::ImageFile read;
        std::string error;
        EXPECT_FALSE(kit::readImageFile(file(c.name), kit::Precision::Float, read, error)) << c.name;
        EXPECT_THAT(error, c.message);
    }
}

} // namespace
} // namespace verra_test
