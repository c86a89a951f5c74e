// Tests of verra_sdk/kit/safe_output.h.

#include "support/kit_env.h"

#include <verra_sdk/kit/safe_output.h>

#include <optional>

#include <sys/resource.h>
#include <sys/stat.h>

namespace verra_test {
namespace {

namespace stdfs = std::filesystem;
using SafeOutput = KitTest;

/// A file of `subimages` subimages of RGB noise `width` pixels square, with a second MIP level (tiled, as OpenEXR
/// requires) when `mipmapped`. At 256 pixels, more than `kLimit` bytes in any format.
kit::ImageFile fileOf(int subimages, bool mipmapped, int width = 2)
{
    kit::ImageFile file{{}, subimages, mipmapped};
    for (int subimage = 0; subimage < subimages; ++subimage) {
        for (int miplevel = 0; miplevel <= int(mipmapped); ++miplevel) {
            OIIO::ImageSpec spec(width >> miplevel, width >> miplevel, 3, OIIO::TypeDesc::FLOAT);
            spec.tile_width = spec.tile_height = mipmapped ? 16 : 0;
            file.levels.push_back({subimage, miplevel, spec, OIIO::ImageBuf(spec)});
            OIIO::ImageBufAlgo::noise(file.levels.back().pixels, "uniform", 0.0f, 1.0f);
        }
    }
    return file;
}
constexpr rlim_t kLimit = 16384;

TEST_F(SafeOutput, EachFormatGetsTheAlphaItHolds)
{
    // Straight colour (0.4, 0.2, 0.1) at alpha 0.5, associated or not in memory and in the file; alpha first in
    // OpenEXR images, which OpenImageIO reads back as RGBA.
    for (auto const& [name, associatedIn, associatedOut] : {std::tuple{"b.png", true, false},
                                                            {"c.exr", false, true},
                                                            {"d.exr", true, true},
                                                            {"f.tif", true, true},
                                                            {"g.tga", true, false}}) {
        float const in = associatedIn ? 0.5f : 1, out = associatedOut ? 0.5f : 1;
        Names names{"R", "G", "B", "A"};
        Floats values{0.4f * in, 0.2f * in, 0.1f * in, 0.5f};
        if (OIIO::Strutil::ends_with(name, ".exr")) {
            std::rotate(names.begin(), names.begin() + 3, names.end());
            std::rotate(values.begin(), values.begin() + 3, values.end());
        }
        kit::ImageLevel level{0, 0, {}, imageOf(1, names, values), associatedIn};
        level.fileSpec = level.pixels.spec();
        level.fileSpec.set_format(OIIO::TypeDesc::UINT16);
        kit::ImageFile read;
        std::string error;
        ASSERT_TRUE(kit::writeImageFile(file(name), {{level}, 1, false}, error)) << name << error;
        ASSERT_TRUE(kit::readImageFile(file(name), kit::Precision::Float, read, error)) << name << error;
        EXPECT_EQ(read.levels[0].associatedAlpha, associatedOut) << name;
        Floats const expected{0.4f * out, 0.2f * out, 0.1f * out, 0.5f};
        EXPECT_THAT(floatsOf(read.levels[0].pixels), Pointwise(FloatNear(3e-3f), expected)) << name;
    }
}

TEST_F(SafeOutput, WritesEveryImageAndReplacesThroughLinksKeepingPermissions)
{
    std::string const real = m_env.dir().write("real.exr", "old");
    ::chmod(real.c_str(), 0640);
    stdfs::create_symlink(real, file("link.exr"));
    // MIP levels make a texture; TIFF holds them as its subimages.
    for (auto const& [name, subimages, mipmapped] :
         {std::tuple{"link.exr", 2, false}, {"mip.exr", 1, true}, {"mip.tif", 1, true}}) {
        kit::ImageFile read;
        std::string error;
        ASSERT_TRUE(kit::writeImageFile(file(name), fileOf(subimages, mipmapped), error)) << name << error;
        ASSERT_TRUE(kit::readImageFile(file(name), kit::Precision::Float, read, error)) << name << error;
        EXPECT_EQ(read.levels.size(), 2u) << name;
        EXPECT_EQ(read.subimages, subimages) << name;
        EXPECT_EQ(read.mipmapped, mipmapped) << name;
        EXPECT_EQ(read.levels[0].fileSpec.get_string_attribute("textureformat"), mipmapped ? "Plain Texture" : "");
    }
    EXPECT_TRUE(stdfs::is_symlink(file("link.exr")));
    EXPECT_EQ(stdfs::status(real).permissions(), stdfs::perms(0640));
    EXPECT_THAT(entriesOf(m_env.dir().path()), ElementsAre("link.exr", "mip.exr", "mip.tif", "real.exr"));
}

TEST_F(SafeOutput, RefusesWhatItCannotWriteWholeAndLeavesTheOldFile)
{
    stdfs::create_directories(file("folder.png"));
    ::mkfifo(file("pipe.png").c_str(), 0644);
    kit::installWriteGuards();
    kit::ImageFile const one = fileOf(1, false), big = fileOf(1, false, 256);
    std::tuple<char const*, kit::ImageFile, ::testing::Matcher<std::string>> const cases[] = {
        {"folder.png", one, "it is a folder"},
        {"pipe.png", one, "it is not a regular file"},
        {"parts.png", fileOf(2, false),
         "a png file holds one image, and the input has 2 subimages; choose a format that holds them all (exr, tif)"},
        {"mip.png", fileOf(1, true),
         "a png file holds no MIP levels, and the input has them; choose a format that holds them (exr, tif)"},
        {"both.tif", fileOf(2, true),
         "a tiff file holds no MIP levels in several subimages, and the input has them; choose a format that "
         "holds them (exr)"},
        {"x.unknown", one, ::testing::HasSubstr("could not find a format writer for \"" + file("x.unknown"))},
        {"nowhere/x.png", one, "No such file or directory"},
        // Writes that fail part-way, under a file-size limit, as each format sees them.
        {"old.png", big, "File too large"},
        {"old.tga", big, "File too large"},
        {"old.exr", big, ::testing::StartsWith("Failed OpenEXR write: Failed to write pixel data")},
        {"old.tif", big, ::testing::StartsWith("TIFFWriteScanline failed writing line ")},
    };
    rlimit unlimited{};
    ::getrlimit(RLIMIT_FSIZE, &unlimited);
    rlimit const limited{kLimit, unlimited.rlim_max};
    for (auto const& [name, image, message] : cases) {
        // Where a regular file can be, an old one is.
        bool const old = !stdfs::exists(file(name)) && stdfs::exists(stdfs::path(file(name)).parent_path());
        if (old) {
            m_env.dir().write(name, "old");
        }
        Names const before = entriesOf(m_env.dir().path());
        std::string error;
        ::setrlimit(RLIMIT_FSIZE, &limited);
        EXPECT_FALSE(kit::writeImageFile(file(name), image, error)) << name;
        ::setrlimit(RLIMIT_FSIZE, &unlimited);
        EXPECT_THAT(error, message) << name;
        EXPECT_EQ(entriesOf(m_env.dir().path()), before) << name;
        if (old) { // never read the pipe: that would wait for a writer
            EXPECT_EQ(readFile(file(name)), "old") << name;
        }
    }
}

TEST(SafeOutputExit, AnExitFromInsideALibraryRemovesTheTemporaryFile)
{
    // The death test's child process runs this test again, and finds the parent's folder in the environment.
    EnvGuard const variable("VERRA_TEST_EXIT_FOLDER");
    std::optional<TempDir> own;
    std::string const folder =
        std::getenv("VERRA_TEST_EXIT_FOLDER") ? std::getenv("VERRA_TEST_EXIT_FOLDER") : own.emplace().path();
    variable.set(folder);
    std::ofstream(folder + "/old.jpg") << "old";
    // libjpeg ends the program when a write fails.
    auto const writeUnderLimit = [&folder] {
        kit::installWriteGuards();
        rlimit const limited{kLimit, RLIM_INFINITY};
        ::setrlimit(RLIMIT_FSIZE, &limited);
        std::string error;
        kit::writeImageFile(folder + "/old.jpg", fileOf(1, false, 256), error);
    };
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    EXPECT_EXIT(writeUnderLimit(), ::testing::ExitedWithCode(EXIT_FAILURE), "");
    EXPECT_EQ(readFile(folder + "/old.jpg"), "old");
    EXPECT_THAT(entriesOf(folder), ElementsAre("old.jpg"));
}

} // namespace
} // namespace verra_test
