// What each subcommand prints, as a whole, on the sample configuration.

#include "tool_test.h"

namespace verra_test {
namespace {

using ToolGolden = ToolTest;

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
    EXPECT_EQ(run({"info"}), Outcome(0, R"(Config
  No OCIO config found, will use built-in color spaces.
  In use: the built-in colour spaces only (linear, sRGB, Rec709).

Colour spaces (3)
  linear*  sRGB*    Rec709*
  * built in: the module's own, listed before the config's

Inactive colour spaces, accepted by name (0)
  (none)

Config colour spaces the list hides (0)
  (none)

Default display  (none)
Default view     (none)

Displays and their views (0)
  (none)

Looks (0)
  (none)

Roles and their colour spaces (0)
  (none)
)",
                                     ""));
    EXPECT_EQ(run({"check", "--config", config}), Outcome(0, inDir(R"(Config  $D/sample.ocio
Default display / view  Monitor / Tone

Colour spaces that fail: 0 of 6

Display views that fail: 0 of 3

Looks that fail: 0 of 1

Config colour spaces the module's list hides (1)
  SRGB  shadowed by the built-in 'sRGB'

Roles and their colour spaces (3)
  color_picking  srgb_tex
  default        lin
  scene_linear   lin

File rules
  render.exr   linear (extension; rule 'Default' names the role 'default')
  plate.dpx    srgb_tex (file rule 'plates')
  texture.png  srgb_tex (file rule 'textures')
  photo.jpg    sRGB (extension; rule 'Default' names the role 'default')
  scan.tif     linear (extension; rule 'Default' names the role 'default')

Verdict: OK
)"),
                                                          ""));
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
