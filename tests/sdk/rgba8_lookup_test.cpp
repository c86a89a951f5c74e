// The table route of RGBA8 image conversion gives exactly the bytes of
// OpenImageIO's colorconvert: for every byte value in every channel, on
// every processor the tests can build, and it steps aside where a
// conversion is not a table per channel.

#include <verra_sdk/colorconfig.h>

#include "rgba8_lookup.h"
#include "support/log_capture.h"
#include "support/module_env.h"

#include <OpenImageIO/imagebuf.h>
#include <OpenImageIO/imagebufalgo.h>
#include <gtest/gtest.h>

#include <cctype>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <string>
#include <vector>

using namespace orv::verra_sdk;
namespace stdfs = std::filesystem;

namespace {

constexpr int kSide = 256;

/// 256 × 256 pixels in which red, green, blue and alpha each take every
/// byte value, at many positions and beside many values of the others.
std::vector<std::uint8_t> everyByteImage()
{
    std::vector<std::uint8_t> bytes(kSide * kSide * 4);
    for (int y = 0; y < kSide; ++y) {
        for (int x = 0; x < kSide; ++x) {
            std::uint8_t* p = &bytes[static_cast<std::size_t>((y * kSide + x) * 4)];
            p[0] = static_cast<std::uint8_t>(x);
            p[1] = static_cast<std::uint8_t>(y);
            p[2] = static_cast<std::uint8_t>((x + y) & 0xFF);
            p[3] = static_cast<std::uint8_t>(x ^ y);
        }
    }
    return bytes;
}

/// Converts the every-byte image through the module and through
/// colorconvert with the same processor; expects identical bytes. Returns
/// false when the configuration has no processor for the pair.
bool expectSameAsColorconvert(std::string const& from, std::string const& to)
{
    OIIO::ColorProcessorHandle const processor = colorConfig().createColorProcessor(from, to, "", "");
    if (!processor) {
        return false;
    }
    std::vector<std::uint8_t> const input = everyByteImage();
    std::vector<std::uint8_t> expected = input;
    OIIO::ImageBuf reference(OIIO::ImageSpec(kSide, kSide, 4, OIIO::TypeDesc::UINT8), expected.data());
    EXPECT_TRUE(OIIO::ImageBufAlgo::colorconvert(reference, reference, processor.get(), false, OIIO::ROI(), 0));

    Image image = Image::create(kSide, kSide);
    std::memcpy(image.rgba8(), input.data(), input.size());
    EXPECT_TRUE(ColorConfig::transform(image, orv::String(from.c_str()), orv::String(to.c_str())))
        << from << " -> " << to;
    EXPECT_EQ(std::memcmp(image.rgba8(), expected.data(), expected.size()), 0) << from << " -> " << to;
    return true;
}

/// Every ordered pair of the configuration's colour spaces.
int expectAllPairsSameAsColorconvert()
{
    OIIO::ColorConfig& config = colorConfig();
    std::vector<std::string> names;
    for (int i = 0; i < config.getNumColorSpaces(); ++i) {
        names.emplace_back(config.getColorSpaceNameByIndex(i));
    }
    int converted = 0;
    for (std::string const& from : names) {
        for (std::string const& to : names) {
            if (from != to && expectSameAsColorconvert(from, to)) {
                ++converted;
            }
        }
    }
    return converted;
}

class Rgba8Lookup : public ::testing::Test {
protected:
    verra_test::ModuleEnv env;
    verra_test::LogCapture log;
};

TEST_F(Rgba8Lookup, BuiltInConfigurationGivesColorconvertsBytes)
{
    ColorConfig::loadOcioConfig("");
    EXPECT_GT(expectAllPairsSameAsColorconvert(), 0);
    for (auto const& [from, to] : std::vector<std::pair<std::string, std::string>>{
             {"linear", "sRGB"}, {"sRGB", "linear"}, {"linear", "Rec709"}, {"Rec709", "linear"}}) {
        // These are the conversions the table route exists for.
        orv::verra_sdk::detail::Rgba8Lookup lookup;
        EXPECT_TRUE(lookup.build(*colorConfig().createColorProcessor(from, to))) << from << " -> " << to;
    }
}

TEST_F(Rgba8Lookup, OddSizesAndTheSmallestTabledImageMatch)
{
    ColorConfig::loadOcioConfig("");
    OIIO::ColorProcessorHandle const processor = colorConfig().createColorProcessor("linear", "sRGB");
    for (int width : {static_cast<int>(orv::verra_sdk::detail::Rgba8Lookup::kMinPixels), 16411, 4099}) {
        int const height = width == 4099 ? 7 : 1;
        std::vector<std::uint8_t> input(static_cast<std::size_t>(width * height * 4));
        for (std::size_t i = 0; i < input.size(); ++i) {
            input[i] = static_cast<std::uint8_t>(i * 7919 >> 3);
        }
        std::vector<std::uint8_t> expected = input;
        OIIO::ImageBuf reference(OIIO::ImageSpec(width, height, 4, OIIO::TypeDesc::UINT8), expected.data());
        ASSERT_TRUE(OIIO::ImageBufAlgo::colorconvert(reference, reference, processor.get(), false, OIIO::ROI(), 0));
        Image image = Image::create(width, height);
        std::memcpy(image.rgba8(), input.data(), input.size());
        ASSERT_TRUE(ColorConfig::linearToColorSpace(image, "sRGB"));
        EXPECT_EQ(std::memcmp(image.rgba8(), expected.data(), expected.size()), 0) << width << " x " << height;
    }
}

TEST_F(Rgba8Lookup, CrosstalkAndCurvesOfATestConfigMatch)
{
    // A matrix that mixes channels (no tables possible) and curves per
    // channel (tables), from OpenColorIO's built-in operators.
    std::string const path = env.dir().write("mix.ocio", R"(ocio_profile_version: 2.1
roles:
  default: lin
file_rules:
  - !<Rule> {name: Default, colorspace: default}
displays:
  D:
    - !<View> {name: V, colorspace: lin}
active_displays: []
active_views: []
colorspaces:
  - !<ColorSpace>
    name: lin
  - !<ColorSpace>
    name: mixed
    to_scene_reference: !<MatrixTransform> {matrix: [0.6, 0.3, 0.1, 0, 0.2, 0.7, 0.1, 0, 0.1, 0.1, 0.8, 0, 0, 0, 0, 1]}
  - !<ColorSpace>
    name: curve
    to_scene_reference: !<ExponentWithLinearTransform> {gamma: 2.4, offset: 0.055}
  - !<ColorSpace>
    name: scaled
    to_scene_reference: !<MatrixTransform> {matrix: [2, 0, 0, 0, 0, 0.5, 0, 0, 0, 0, 1.5, 0, 0, 0, 0, 1]}
)");
    ASSERT_EQ(std::string(ColorConfig::loadOcioConfig(orv::String(path.c_str())).buf()),
              "Using specified OCIO config: " + path);
    EXPECT_EQ(expectAllPairsSameAsColorconvert(), 12);

    orv::verra_sdk::detail::Rgba8Lookup lookup;
    EXPECT_FALSE(lookup.build(*colorConfig().createColorProcessor("lin", "mixed")));
    EXPECT_TRUE(lookup.build(*colorConfig().createColorProcessor("lin", "curve")));
    EXPECT_TRUE(log.lines().empty());
}

/// The real configurations of the shared folder, every pair of their spaces.
class Rgba8LookupRealConfigs : public Rgba8Lookup, public ::testing::WithParamInterface<std::string> {
};

TEST_P(Rgba8LookupRealConfigs, EveryPairGivesColorconvertsBytes)
{
    char const* root = std::getenv("VERRA_SHARED_CONFIGS");
    if (!root || !stdfs::is_directory(root)) {
        GTEST_SKIP() << "the shared folder of real configs is not present";
    }
    std::string const path = stdfs::canonical(std::string(root) + "/" + GetParam()).string();
    ColorConfig::loadOcioConfig(orv::String(path.c_str()));
    EXPECT_GT(expectAllPairsSameAsColorconvert(), 0);
}

INSTANTIATE_TEST_SUITE_P(
    SharedFolder, Rgba8LookupRealConfigs,
    ::testing::Values("aces-cg-config-v1.0.0_aces-v1.3_ocio-v2.1/cg-config-v1.0.0_aces-v1.3_ocio-v2.1.ocio",
                      "ocio-v2-demo/ocio-v2_demo.ocio", "imageworks-nuke-default/config.ocio",
                      "ocio-test-context_test1/config.ocio"),
    [](::testing::TestParamInfo<std::string> const& param) {
        std::string name = param.param.substr(0, param.param.find('/'));
        for (char& c : name) {
            c = std::isalnum(static_cast<unsigned char>(c)) ? c : '_';
        }
        return name;
    });

} // namespace
