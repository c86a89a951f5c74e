// Tests of verra_sdk/kit/lut_bake.h: each baked file, applied by oiiotool,
// against oiiotool's own transform of the same config, within the error the
// bake reports.

#include "support/kit_env.h"

#include <verra_sdk/kit/lut_bake.h>

namespace verra_test {
namespace {

using LutBake = KitTest;

/// A log space covering scene-linear 2^-12 to 2^8, for a shaper.
constexpr char const* kLogSpace = "  - !<ColorSpace> {name: log, to_scene_reference: !<LogAffineTransform> "
                                  "{base: 2, log_side_slope: 0.05, log_side_offset: 0.6, direction: inverse}}\n";

TEST_F(LutBake, BakedFilesApplyAsTheTransformWithinTheErrorTheyReport)
{
    std::string const config = sampleConfig(kLogSpace);
    ASSERT_THAT(load(config).errors, IsEmpty());
    // Display-referred [0, 1] input, and scene-linear HDR input from 2^-10 to 2^7.
    OIIO::ImageBuf noise(OIIO::ImageSpec(16, 16, 3, OIIO::TypeDesc::FLOAT));
    OIIO::ImageBufAlgo::noise(noise, "uniform", 0.0f, 1.0f, false);
    ASSERT_TRUE(noise.write(file("sdr.exr")));
    Floats hdr = floatsOf(noise);
    std::transform(hdr.begin(), hdr.end(), hdr.begin(), [](float v) { return std::exp2(17 * v - 10); });
    noise.set_pixels(noise.roi(), OIIO::TypeDesc::FLOAT, hdr.data());
    ASSERT_TRUE(noise.write(file("hdr.exr")));
    struct Case {
        char const* out;
        kit::LutBake bake;
        char const* input;
        char const* reference;
        double bound;
    } const cases[] = {
        {"a.cube", {"srgb_tex", "lin"}, "sdr.exr", "--colorconvert srgb_tex lin", 1e-3},
        {"a.clf", {"srgb_tex", "lin"}, "sdr.exr", "--colorconvert srgb_tex lin", 1e-5},
        {"a.3dl", {"srgb_tex", "lin"}, "sdr.exr", "--colorconvert srgb_tex lin", 2e-3},
        // oiiotool's --ociodisplay drops its looks= option: the look goes first.
        {"tone.cube",
         {"lin", "", "Monitor", "Tone", "Bright"},
         "sdr.exr",
         "--ociolook:from=lin:to=lin Bright --ociodisplay:from=lin Monitor Tone",
         0.05},
        // Saturated colours far from grey are where a cube strays most.
        {"tone.csp", {"linear", "", "", "", "", "log"}, "hdr.exr", "--ociodisplay:from=lin Monitor Tone", 0.35},
    };
    for (Case const& c : cases) {
        kit::BakeReport report;
        std::string error;
        ASSERT_TRUE(kit::bakeLut(c.bake, file(c.out), report, error)) << error;
        EXPECT_LT(report.largestError, c.bound) << c.out;
        Floats const exact = oiiotool(config, file(c.input), c.reference, file("exact.exr"));
        Floats const baked =
            oiiotool(config, file(c.input), "--ociofiletransform '" + file(c.out) + "'", file("baked.exr"));
        EXPECT_GT(largestDifference(exact, floatsOf(readImage(file(c.input)))), 0.1f) << c.out;
        EXPECT_LE(largestDifference(baked, exact), 2 * report.largestError + 1e-5) << c.out;
    }
}

} // namespace
} // namespace verra_test
