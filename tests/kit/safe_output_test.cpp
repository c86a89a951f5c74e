// Tests of verra_sdk/kit/safe_output.h.

#include "support/images.h"
#include "support/kit_env.h"

#include <verra_sdk/kit/safe_output.h>

#include <optional>

#include <sys/resource.h>
#include <sys/stat.h>

namespace verra_test {
namespace {

namespace kit = orv::verra_sdk::kit;
namespace stdfs = std::filesystem;
using ::testing::ElementsAre;
using ::testing::FloatNear;
using ::testing::IsEmpty;
using ::testing::Pointwise;
using SafeOutput = KitTest;
Names const kRgba{"R", "G", "B", "A"};

/// A file of `subimages` subimages, each a 2 × 2 RGB square of 0.5, with a
/// second MIP level when `mipmapped`.
kit::ImageFile fileOf(int subimages, bool mipmapped)
{
    kit::ImageFile file{{}, subimages, mipmapped};
    for (int subimage = 0; subimage < subimages; ++subimage) {
        for (int miplevel = 0; miplevel <= int(mipmapped); ++miplevel) {
            int const width = 2 >> miplevel;
            Floats const values(std::size_t(width * width) * 3, 0.5f);
            file.levels.push_back({subimage, miplevel, {}, imageOf(width, {"R", "G", "B"}, values)});
            // MIP levels are tiled, as OpenEXR requires.
            OIIO::ImageSpec& spec = file.levels.back().fileSpec = file.levels.back().pixels.spec();
            spec.tile_width = spec.tile_height = mipmapped ? 16 : 0;
        }
    }
    return file;
}

/// One 256 × 256 RGBA image of noise: more than `kLimit` bytes in any format.
kit::ImageFile noiseFile()
{
    kit::ImageFile big{{{0, 0, {256, 256, 4, OIIO::TypeDesc::FLOAT}, {}}}, 1, false};
    big.levels[0].pixels.reset(big.levels[0].fileSpec);
    OIIO::ImageBufAlgo::noise(big.levels[0].pixels, "uniform", 0.0f, 1.0f);
    return big;
}
constexpr rlim_t kLimit = 16384;

TEST_F(SafeOutput, EachFormatGetsTheAlphaItHolds)
{
    // Straight colour (0.4, 0.2, 0.1) at alpha 0.5, associated or not in memory and in the file; alpha
    // first in OpenEXR images, which OpenImageIO reads back as RGBA.
    struct Case {
        char const* name;
        bool associatedIn, associatedOut;
    } const cases[] = {
        {"a.png", false, false}, {"b.png", true, false}, {"c.exr", false, true}, {"d.exr", true, true},
        {"e.tif", false, false}, {"f.tif", true, true},  {"g.tga", true, false}, {"h.bmp", false, true},
    };
    for (Case const& c : cases) {
        float const in = c.associatedIn ? 0.5f : 1, out = c.associatedOut ? 0.5f : 1;
        bool const alphaFirst = OIIO::Strutil::ends_with(c.name, ".exr");
        OIIO::ImageBuf const pixels = alphaFirst
                                          ? imageOf(1, {"A", "R", "G", "B"}, {0.5f, 0.4f * in, 0.2f * in, 0.1f * in})
                                          : imageOf(1, kRgba, {0.4f * in, 0.2f * in, 0.1f * in, 0.5f});
        kit::ImageLevel level{0, 0, pixels.spec(), pixels, c.associatedIn};
        level.fileSpec.set_format(OIIO::TypeDesc::UINT16);
        kit::ImageFile read;
        std::string error;
        ASSERT_TRUE(kit::writeImageFile(file(c.name), {{level}, 1, false}, error)) << c.name << error;
        ASSERT_TRUE(kit::readImageFile(file(c.name), kit::Precision::Float, read, error)) << c.name << error;
        EXPECT_EQ(read.levels[0].associatedAlpha, c.associatedOut) << c.name;
        Floats const expected{0.4f * out, 0.2f * out, 0.1f * out, 0.5f};
        EXPECT_THAT(floatsOf(read.levels[0].pixels), Pointwise(FloatNear(3e-3f), expected)) << c.name;
    }
}

TEST_F(SafeOutput, WritesEveryImageAndReplacesThroughLinksKeepingPermissions)
{
    std::string const real = m_env.dir().write("real.exr", "old");
    ::chmod(real.c_str(), 0640);
    stdfs::create_symlink(real, file("link.exr"));
    // MIP levels make a texture; TIFF holds them as its subimages.
    struct Case {
        char const* name;
        kit::ImageFile file;
        char const* texture;
    } const cases[] = {
        {"link.exr", fileOf(2, false), ""},
        {"mip.exr", fileOf(1, true), "Plain Texture"},
        {"mip.tif", fileOf(1, true), "Plain Texture"},
        {"plain.tif", fileOf(1, false), ""},
    };
    for (Case const& c : cases) {
        kit::ImageFile read;
        std::string error;
        ASSERT_TRUE(kit::writeImageFile(file(c.name), c.file, error)) << c.name << error;
        EXPECT_THAT(error, IsEmpty()) << c.name;
        ASSERT_TRUE(kit::readImageFile(file(c.name), kit::Precision::Float, read, error)) << c.name << error;
        EXPECT_EQ(read.levels.size(), c.file.levels.size()) << c.name;
        EXPECT_EQ(read.subimages, c.file.subimages) << c.name;
        EXPECT_EQ(read.mipmapped, c.file.mipmapped) << c.name;
        EXPECT_EQ(read.levels[0].fileSpec.get_string_attribute("textureformat"), c.texture) << c.name;
    }
    EXPECT_TRUE(stdfs::is_symlink(file("link.exr")));
    EXPECT_EQ(stdfs::status(real).permissions(), stdfs::perms(0640));
    EXPECT_THAT(entriesOf(m_env.dir().path()), ElementsAre("link.exr", "mip.exr", "mip.tif", "plain.tif", "real.exr"));
}

TEST_F(SafeOutput, RefusesWhatItCannotWriteWholeAndLeavesTheOldFile)
{
    stdfs::create_directories(file("folder.png"));
    ::mkfifo(file("pipe.png").c_str(), 0644);
    kit::installWriteGuards();
    kit::ImageFile const one = fileOf(1, false), big = noiseFile();
    struct Case {
        char const* name;
        kit::ImageFile file;
        ::testing::Matcher<std::string> message;
    };
    Case const cases[] = {
        {"folder.png", one, "it is a folder"},
        {"pipe.png", one, "it is not a regular file"},
        {"parts.png", fileOf(2, false),
         "a png file holds one image, and the input has 2 subimages; choose a format that holds them all (exr, tif)"},
        {"mip.png", fileOf(1, true),
         "a png file holds no MIP levels, and the input has them; choose a format that holds them (exr, tif)"},
        {"both.tif", fileOf(2, true),
         "a tiff file holds no MIP levels in several subimages, and the input has them; choose a format that "
         "holds them (exr)"},
        {"x.unknown", one,
         "OpenImageIO could not find a format writer for \"" + file("x.unknown") +
             "\". Is it a file format that OpenImageIO doesn't know about?"},
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
    for (Case const& c : cases) {
        // Where a regular file can be, an old one is.
        bool const old = !stdfs::exists(file(c.name)) && stdfs::exists(stdfs::path(file(c.name)).parent_path());
        if (old) {
            m_env.dir().write(c.name, "old");
        }
        Names const before = entriesOf(m_env.dir().path());
        std::string error;
        ::setrlimit(RLIMIT_FSIZE, &limited);
        bool const written = kit::writeImageFile(file(c.name), c.file, error);
        ::setrlimit(RLIMIT_FSIZE, &unlimited);
        EXPECT_FALSE(written) << c.name;
        EXPECT_THAT(error, c.message) << c.name;
        EXPECT_EQ(entriesOf(m_env.dir().path()), before) << c.name;
        EXPECT_TRUE(!old || readFile(file(c.name)) == "old") << c.name;
    }
}

TEST(SafeOutputExit, AnExitFromInsideALibraryRemovesTheTemporaryFile)
{
    // The death test's child process runs this test again, and finds the parent's folder in the environment.
    EnvGuard const variable("VERRA_TEST_EXIT_FOLDER");
    char const* const inherited = std::getenv("VERRA_TEST_EXIT_FOLDER");
    std::optional<TempDir> own;
    std::string const folder = inherited != nullptr ? inherited : own.emplace().path();
    variable.set(folder);
    std::string const target = folder + "/old.jpg";
    std::ofstream(target) << "old";
    // libjpeg ends the program when a write fails.
    auto const writeUnderLimit = [&target] {
        kit::installWriteGuards();
        rlimit const limited{kLimit, RLIM_INFINITY};
        ::setrlimit(RLIMIT_FSIZE, &limited);
        std::string error;
        kit::writeImageFile(target, noiseFile(), error);
    };
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    EXPECT_EXIT(writeUnderLimit(), ::testing::ExitedWithCode(EXIT_FAILURE), "");
    EXPECT_EQ(readFile(target), "old");
    EXPECT_THAT(entriesOf(folder), ElementsAre("old.jpg"));
}

} // namespace
} // namespace verra_test
