// What each subcommand prints, as a whole, on the sample configuration; the
// longest outputs are the files in golden/, where "$D" stands for the test's
// folder.

#include "tool_test.h"

namespace verra_test {
namespace {

class ToolGolden : public ToolTest {
protected:
    /// The file `name` of golden/, its "$D" replaced.
    std::string golden(std::string const& name) const { return inDir(readFile(VERRA_TOOL_GOLDEN "/" + name)); }
};

/// The sample configuration's file rules.
constexpr char const* kRules = R"(file_rules:
  - !<Rule> {name: plates, pattern: "*plate*", extension: "*", colorspace: srgb_tex}
  - !<Rule> {name: textures, pattern: "*", extension: png, colorspace: color_picking}
  - !<Rule> {name: Default, colorspace: default}
)";

TEST_F(ToolGolden, EachSubcommandPrintsWhatItFoundOrDid)
{
    std::string const config = sampleConfig(kRules);
    writeNoise(file("in.exr"), 8, 4, OIIO::TypeDesc::HALF);
    // "info" on the built-in colour spaces.
    EXPECT_EQ(run({"info"}), Outcome(0, golden("info.txt"), ""));
    EXPECT_EQ(run({"check", "--config", config}), Outcome(0, golden("check.txt"), ""));
    // "$D" stands for the test's folder.
    std::pair<Words, Outcome> const cases[] = {
        {{"find", "scene", "COLOR_PICKING", "old", " SRGB ", "lin", "srgb_te"},
         {1, "scene: lin\nCOLOR_PICKING: srgb_tex\nold: old\n SRGB : sRGB\nlin: lin\n",
          "colorconfig: 'scene': alias of 'lin'\ncolorconfig: 'COLOR_PICKING': role color_picking → 'srgb_tex'\n"
          "colorconfig: 'old': inactive\ncolorconfig: ' SRGB ': built-in, shadows the config's 'SRGB'\n"
          "colorconfig: error: unknown colour space 'srgb_te'; closest: 'srgb_tex', 'sRGB'\n"}},
        {{"guess", "a_plate.exr", "shot_raw.exr", "render.exr"},
         {0, "a_plate.exr: srgb_tex\nshot_raw.exr: raw\nrender.exr: linear\n",
          "colorconfig: 'a_plate.exr': file rule 'plates'\n"
          "colorconfig: 'shot_raw.exr': name search (the file rule 'Default' names the role 'default')\n"
          "colorconfig: 'render.exr': extension (the file rule 'Default' names the role 'default')\n"}},
        // The sRGB curve of 0.5 and 1e-3, its linear segment below zero, alpha as it is.
        {{"color", "--verbose", "--from", "srgb_texture", "--to", "scene", "0.5", "-0.25", "1e-3", "0.25"},
         {0, "0.21404114365577698 -0.019345039501786232 7.7380158472806215e-05 0.25\n",
          "colorconfig: Using specified OCIO config: $D/sample.ocio\n"
          "colorconfig: route from 'srgb_tex' to 'lin': processor\n"}},
        {{"convert", "--from", "srgb_texture", "--to", "scene", "$D/in.exr", "$D/c.tif"},
         {0, "$D/in.exr -> $D/c.tif\n", ""}},
        {{"view", "--from", "scene", "--view", "standard", "--look", "Bright", "$D/in.exr", "$D/v.png"},
         {0, "$D/in.exr -> $D/v.png (Monitor / Standard, looks Bright)\n", ""}},
        {{"preview", "--from", "scene", "$D/in.exr", "$D/p.jpg"}, {0, "$D/in.exr -> $D/p.jpg\n", ""}},
    };
    for (auto const& [words, outcome] : cases) {
        Words line{words[0], "--config", config};
        std::transform(words.begin() + 1, words.end(), std::back_inserter(line), [this](auto& w) { return inDir(w); });
        EXPECT_EQ(run(line), Outcome(std::get<0>(outcome), inDir(std::get<1>(outcome)), inDir(std::get<2>(outcome))));
    }
}

} // namespace
} // namespace verra_test
