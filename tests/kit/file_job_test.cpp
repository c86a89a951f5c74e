// Tests of verra_sdk/kit/file_job.h.

#include "support/kit_env.h"

#include <verra_sdk/kit/color_channels.h>
#include <verra_sdk/kit/file_job.h>

#include <cstdlib>

namespace verra_test {
namespace {

using FileJob = KitTest;

TEST_F(FileJob, ColourWithAlphaConvertsAsOiiotoolDoesBetweenFormats)
{
    OIIO::ImageBuf noise(OIIO::ImageSpec(16, 16, 4, T::FLOAT));
    OIIO::ImageBufAlgo::noise(noise, "uniform", 0.2f, 1.0f, false);
    writeParts(file("in.png"), {noise}, T::UINT8);
    writeParts(file("in.exr"), {noise}, T::HALF);
    // `straight`: the EXR file's colour taken as not multiplied by alpha; `seen`: the pixels converted.
    struct Case {
        char const *in, *out, *from, *to;
        bool straight;
        T seen;
    } const cases[] = {
        {"in.png", "png.png", "sRGB", "linear", false, T::UINT8},
        {"in.png", "png.exr", "sRGB", "linear", false, T::FLOAT},
        {"in.exr", "exr.png", "linear", "sRGB", false, T::FLOAT},
        {"in.exr", "straight.exr", "linear", "sRGB", true, T::FLOAT},
    };
    for (Case const& c : cases) {
        std::vector<T> seen;
        auto const convert = [&c, &seen](kit::ImageLevel& level, std::string& error) {
            seen.push_back(level.pixels.spec().format);
            return kit::convertLevel(level, c.from, c.to, error);
        };
        kit::FileLedger ledger;
        ASSERT_TRUE(
            kit::runFileJob({file(c.in), file(c.out), kit::Precision::KeepBytes, false, convert, c.straight}, ledger)
                .ok())
            << c.out;
        EXPECT_THAT(seen, ElementsAre(c.seen)) << c.out;
        // In float, from straight colour; multiplied by alpha where the output holds it so, else clipped as PNG is.
        bool const exr = OIIO::Strutil::ends_with(c.out, ".exr");
        std::string const reference = file(std::string("oiiotool-") + c.out + ".exr");
        std::string const command = "oiiotool --no-autopremult '" + file(c.in) + "' -d float " +
                                    (c.straight || c.in[3] == 'p' ? "" : "--unpremult ") + "--colorconvert " + c.from +
                                    " " + c.to + (exr ? " --repremult" : " --clamp:min=0:max=1") + " -o '" + reference +
                                    "'";
        ASSERT_EQ(std::system(command.c_str()), 0) << command;
        EXPECT_THAT(floatsOf(readImage(file(c.out))), Pointwise(FloatNear(2.5e-3f), floatsOf(readImage(reference))))
            << c.out;
    }
}

TEST_F(FileJob, RefusesOrFailsWithoutTouchingAnyFile)
{
    std::filesystem::create_directories(file("b"));
    std::string const x = file("x.exr"), y = file("b/y.exr"), old = m_env.dir().write("old.png", "old");
    writeParts(x, {imageOf(1, {"R", "G", "B"}, {0, 0, 0}), imageOf(1, {"R", "G", "B"}, {1, 1, 1})});
    std::filesystem::copy_file(x, y);
    std::filesystem::create_symlink(x, file("link.exr"));
    int calls = 0;
    auto const count = [&calls](kit::ImageLevel&, std::string&) { return ++calls > 0; };
    auto const refuse = [&calls](kit::ImageLevel&, std::string& error) {
        return ++calls < 0 || (error = "no").empty();
    };
    using F = kit::JobFailure;
    struct Case {
        std::string in, out;
        bool first;
        F failure;
        std::string message;
        std::size_t images;
        int calls;
    } const cases[] = {
        {y, file("link.exr"), false, F::ReplacesInput, x, 0, 0},
        {y, file("b/../b/y.exr"), false, F::ReplacesInput, y, 0, 0},
        {file("none.exr"), file("z.exr"), false, F::Read, "Could not open file \"" + file("none.exr") + "\"", 0, 0},
        {x, old, false, F::Operation, "no", 2, 1},
        {x, old, false, F::Write,
         "a png file holds one image, and the input has 2 subimages; choose a format that holds them all (exr, tif)", 2,
         2},
        {x, old, true, F::None, "", 2, 1},
        {y, file("b/../old.png"), true, F::WrittenBefore, "", 0, 0},
    };
    kit::FileLedger ledger{{x}, {}};
    for (Case const& c : cases) {
        calls = 0;
        std::string const before = readFile(old);
        kit::ImageOperation const operation = c.message == "no" ? kit::ImageOperation(refuse) : count;
        kit::JobResult const result = kit::runFileJob({c.in, c.out, kit::Precision::Float, c.first, operation}, ledger);
        SCOPED_TRACE(c.in + " -> " + c.out);
        EXPECT_EQ(result.failure, c.failure);
        EXPECT_EQ(result.message, c.message);
        EXPECT_EQ(result.images, c.images);
        EXPECT_EQ(calls, c.calls);
        EXPECT_EQ(readFile(old), result.ok() ? readFile(old) : before);
    }
    EXPECT_THAT(ledger.written, ElementsAre(old));
    EXPECT_THAT(entriesOf(m_env.dir().path()), ElementsAre("b", "link.exr", "old.png", "x.exr"));
}

} // namespace
} // namespace verra_test
