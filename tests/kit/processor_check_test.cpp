// Tests of verra_sdk/kit/processor_check.h.

#include "support/kit_env.h"

#include <verra_sdk/kit/processor_check.h>

namespace verra_test {
namespace {

using ConversionProblem = KitTest;

TEST_F(ConversionProblem, NamesTheFileOnlyForTheConversionsThatNeedIt)
{
    EXPECT_EQ(kit::conversionProblem("linear", "sRGB"), "");
    m_env.dir().write("corrupt.spi1d", "Version 1\nFrom 0 1\nLength 4\nComponents 1\n{\n 0 0.5\n");
    std::string const config = m_env.dir().write(
        "luts.ocio", ocioConfig({"lin", "log"}, {"log"}, "search_path: .\nroles: {default: lin, scene_linear: lin}\n") +
                         "  - !<ColorSpace> {name: gone, to_scene_reference: !<FileTransform> {src: gone.spi1d}}\n"
                         "  - !<ColorSpace> {name: bad, to_scene_reference: !<FileTransform> {src: corrupt.spi1d}}\n");
    ASSERT_THAT(load(config).errors, IsEmpty());
    auto const missing =
        AllOf(StartsWith("The specified file reference 'gone.spi1d' could not be located."), Not(HasSubstr("\n")));
    auto const corrupt = AllOf(HasSubstr("corrupt.spi1d' could not be loaded"), HasSubstr("Malformed LUT line"));
    std::tuple<char const*, char const*, Matcher<std::string>> const cases[] = {
        {"lin", "log", IsEmpty()},     {"log", "linear", IsEmpty()}, {"sRGB", "gone", IsEmpty()},
        {"gone", "Rec709", IsEmpty()}, {"lin", "gone", missing},     {"gone", "log", missing},
        {"linear", "bad", corrupt},    {"bad", "LINEAR", corrupt},
    };
    for (auto const& [from, to, problem] : cases) {
        EXPECT_THAT(kit::conversionProblem(from, to), problem) << from << " -> " << to;
    }
}

} // namespace
} // namespace verra_test
