// Tests of verra_sdk/kit/file_guess.h.

#include "support/kit_env.h"

#include <verra_sdk/kit/file_guess.h>

namespace verra_test {
namespace {

using GuessColorSpace = KitTest;

/// What `guessColorSpace(file, fallback)` gives, as words: colour space,
/// step, rule, the rule's answer ("role " before a role).
Names guessed(std::string const& file, bool fallback)
{
    kit::FileGuess const g = kit::guessColorSpace(file, fallback);
    return {g.colorSpace, kit::guessStepName(g.step), g.rule, (g.ruleNamesRole ? "role " : "") + g.ruleAnswer};
}

TEST_F(GuessColorSpace, TellsTheStepThatAnswered)
{
    std::string const config = sampleConfig(R"(file_rules:
  - !<Rule> {name: Plates, pattern: "*plate*", extension: "*", colorspace: scene_linear}
  - !<Rule> {name: Scans, pattern: "*", extension: "dpx", colorspace: raw}
  - !<Rule> {name: Textures, pattern: "*", extension: "tif", colorspace: srgb_texture}
  - !<Rule> {name: Default, colorspace: default}
)");
    ASSERT_THAT(load(config).errors, IsEmpty());
    std::vector<std::tuple<std::string, bool, Names>> const cases{
        {"shot_plate.exr", false, {"lin", "file rule", "Plates", "role scene_linear"}},
        {"scan_tone.dpx", false, {"raw", "file rule", "Scans", "raw"}},
        {"wall.tif", false, {"srgb_tex", "file rule", "Textures", "srgb_texture"}},
        {"shot_tone.exr", false, {"tone", "name search", "Default", "role default"}},
        {"photo.png", true, {"sRGB", "extension", "Default", "role default"}},
        {"photo.png", false, {"", "none", "Default", "role default"}},
    };
    for (auto const& [file, fallback, expected] : cases) {
        EXPECT_EQ(guessed(file, fallback), expected) << file;
    }
    // Without the config, its rules no longer answer.
    ASSERT_THAT(load("").errors, IsEmpty());
    EXPECT_EQ(guessed("shot_plate.exr", false), (Names{"", "none", "", ""}));
}

} // namespace
} // namespace verra_test
