// Tests of verra_sdk/kit/config_check.h.

#include "support/kit_env.h"

#include <verra_sdk/kit/config_check.h>

namespace verra_test {
namespace {

using CheckConfig = KitTest;

/// A failure of `what` whose reason names the missing `file`.
auto failure(std::string const& what, std::string const& file)
{
    return AllOf(Field(&kit::Failure::what, what),
                 Field(&kit::Failure::reason, HasSubstr("'" + file + "' could not be located")));
}

TEST_F(CheckConfig, TriesEverySpaceViewAndLook)
{
    EXPECT_THAT(kit::checkConfig(),
                AllOf(Field(&kit::CheckReport::read, false),
                      Field(&kit::CheckReport::status,
                            Field(&kit::ConfigStatus::errors,
                                  ElementsAre("no config file is in use, only the built-in colour spaces: name one "
                                              "with --config, ocio.txt or $OCIO")))));
    // The scene-linear space is the view Linear's own, the first space is
    // data, Hidden is an inactive view of an inactive space.
    std::string const config = m_env.dir().write("broken.ocio", R"(ocio_profile_version: 2.1
roles: {default: raw, scene_linear: lutlin}
file_rules:
  - !<Rule> {name: Plates, pattern: "*plate*", extension: "*", colorspace: scene_linear}
  - !<Rule> {name: Default, colorspace: default}
displays:
  Monitor: [!<View> {name: Linear, colorspace: lutlin}, !<View> {name: Standard, colorspace: srgb},
            !<View> {name: Hidden, colorspace: gone}]
active_views: [Linear, Standard]
inactive_colorspaces: [gone]
looks: [!<Look> {name: Dim, process_space: srgb, transform: !<FileTransform> {src: dim.cube}}]
colorspaces:
  - !<ColorSpace> {name: raw, isdata: true}
  - !<ColorSpace> {name: lutlin, to_scene_reference: !<FileTransform> {src: lin.spi1d}}
  - !<ColorSpace> {name: srgb, to_scene_reference: !<ExponentWithLinearTransform> {gamma: 2.4, offset: 0.055}}
  - !<ColorSpace> {name: gone, to_scene_reference: !<FileTransform> {src: gone.spi1d}}
)");
    ASSERT_THAT(load(config).errors, IsEmpty());
    kit::CheckReport const report = kit::checkConfig();
    EXPECT_THAT(report.colorSpaces, ElementsAre(failure("lutlin", "lin.spi1d"), failure("gone", "gone.spi1d")));
    EXPECT_THAT(report.views,
                ElementsAre(failure("Monitor / Linear", "lin.spi1d"), failure("Monitor / Hidden", "gone.spi1d")));
    EXPECT_THAT(report.looks, ElementsAre(failure("Dim", "dim.cube")));
    EXPECT_EQ(std::vector<int>({report.colorSpaceCount, report.viewCount, report.lookCount}), std::vector({4, 3, 1}));
    EXPECT_TRUE(report.broken());
    EXPECT_THAT(report.fileNames, IsSupersetOf({FieldsAre("plate.dpx", Field(&kit::FileGuess::colorSpace, "lutlin")),
                                                FieldsAre("photo.jpg", Field(&kit::FileGuess::colorSpace, "sRGB"))}));
}

} // namespace
} // namespace verra_test
