// The names artists type, display/view transforms compared with oiiotool,
// and config checks compared with ociocheck.

#include "tool_test.h"

#include <nlohmann/json.hpp>

namespace verra_test {
namespace {

using Json = nlohmann::json;
using ToolColour = ToolTest;

/// A config with an alias, a role, an inactive space, a space that the
/// built-in sRGB shadows, a tone-mapping view and a look that doubles.
std::string const kArtistConfig = R"(ocio_profile_version: 2.1
roles: {default: lin, scene_linear: lin, color_picking: srgb_tex}
file_rules:
  - !<Rule> {name: textures, colorspace: srgb_tex, pattern: "*", extension: tx}
  - !<Rule> {name: Default, colorspace: lin}
displays:
  Monitor: [!<View> {name: Tone, colorspace: tone}, !<View> {name: Standard, colorspace: srgb_tex}]
active_displays: []
active_views: []
looks:
  - !<Look>
    name: Bright
    process_space: lin
    transform: !<MatrixTransform> {matrix: [2, 0, 0, 0, 0, 2, 0, 0, 0, 0, 2, 0, 0, 0, 0, 1]}
inactive_colorspaces: [old]
colorspaces:
  - !<ColorSpace> {name: lin, aliases: [scene, linear_rec709]}
  - !<ColorSpace> {name: srgb_tex, aliases: [srgb_texture], to_scene_reference: !<ExponentWithLinearTransform> {gamma: 2.4, offset: 0.055}}
  - !<ColorSpace> {name: SRGB, to_scene_reference: !<ExponentTransform> {value: 2.2}}
  - !<ColorSpace> {name: old, to_scene_reference: !<ExponentTransform> {value: 1.8}}
  - !<ColorSpace>
    name: tone
    from_scene_reference: !<GroupTransform>
      children:
        - !<BuiltinTransform> {style: "ACES-OUTPUT - ACES2065-1_to_CIE-XYZ-D65 - SDR-VIDEO_1.0"}
        - !<ExponentWithLinearTransform> {gamma: 2.4, offset: 0.055, direction: inverse}
)";

/// The shared real configs, or none when ../shared is not beside the checkout.
Names sharedConfigs()
{
    char const* folder = std::getenv("VERRA_SHARED_CONFIGS");
    Names found;
    for (char const* name : {"aces-cg-config-v1.0.0_aces-v1.3_ocio-v2.1/cg-config-v1.0.0_aces-v1.3_ocio-v2.1.ocio",
                             "ocio-v2-demo/ocio-v2_demo.ocio", "imageworks-nuke-default/config.ocio",
                             "ocio-test-context_test1/config.ocio",
                             "aces-cg-config-v2.1.0_aces-v1.3_ocio-v2.3/cg-config-v2.1.0_aces-v1.3_ocio-v2.3.ocio"}) {
        std::string const path = std::string(folder != nullptr ? folder : "") + "/" + name;
        if (folder != nullptr && std::filesystem::exists(path)) {
            found.push_back(path);
        }
    }
    return found;
}

bool installed(char const* program)
{
    return std::system((std::string("command -v ") + program + " >/dev/null 2>&1").c_str()) == 0;
}

TEST_F(ToolColour, ResolvesAliasesRolesAndInactiveSpacesAndSaysHow)
{
    std::string const config = m_env.dir().write("artist.ocio", kArtistConfig);
    Outcome const found = run({"find", "--config", config, "scene", "COLOR_PICKING", "old", "srgb", "lin"});
    EXPECT_EQ(found.code, 0) << found.err;
    EXPECT_EQ(found.out, "scene: lin\nCOLOR_PICKING: srgb_tex\nold: old\nsrgb: sRGB\nlin: lin\n");
    EXPECT_EQ(found.err, "colorconfig: 'scene': alias of 'lin'\n"
                         "colorconfig: 'COLOR_PICKING': role color_picking → 'srgb_tex'\n"
                         "colorconfig: 'old': inactive\n"
                         "colorconfig: 'srgb': built-in, shadows the config's 'SRGB'\n");
    Json const json = Json::parse(run({"find", "--json", "--config", config, "linear_rec709", "srgb_texure"}).out);
    EXPECT_EQ(json, Json::parse(R"([{"name": "linear_rec709", "colorSpace": "lin", "how": "alias of 'lin'",
        "closest": []}, {"name": "srgb_texure", "colorSpace": null, "how": "", "closest": ["srgb_tex", "sRGB"]}])"));
    // The same colour through aliases, roles and canonical names.
    Outcome const byAlias = run({"color", "--config", config, "--from", "srgb_texture", "--to", "scene", "0.5", "0.2", "0.9"});
    EXPECT_EQ(byAlias.out, run({"color", "--config", config, "--from", "srgb_tex", "--to", "lin", "0.5", "0.2", "0.9"}).out);
    EXPECT_EQ(Json::parse(run({"color", "--json", "--config", config, "--from", "old", "--to", "lin", "0.5", "0", "1", "0.25"}).out),
              Json::parse(R"({"from": "old", "to": "lin", "route": "processor", "input": [0.5, 0, 1, 0.25],
                  "output": [)" + fmt::format("{:.17g}", std::pow(0.5f, 1.8f)) + R"(, 0, 1, 0.25]})"));
}

TEST_F(ToolColour, ClosestNamesOfferOnlyBuiltInsThatConvert)
{
    // The built-in sRGB converts to nothing of this config; without one it is the closest name.
    std::string const config = m_env.dir().write("plain.ocio", ocioConfig({"ACEScg", "srgb_texture"}));
    EXPECT_EQ(run({"find", "--config", config, "srgbb"}).err, "colorconfig: error: unknown colour space 'srgbb' "
                                                               "('colorconfig info' lists them all)\n");
    EXPECT_EQ(run({"find", "srgbb"}).err, "colorconfig: error: unknown colour space 'srgbb'; closest: 'sRGB'\n");
}

TEST_F(ToolColour, GuessFollowsTheFileRulesOfTheGivenConfigNotOfOcio)
{
    std::string const config = m_env.dir().write("artist.ocio", kArtistConfig);
    m_env.ocio().set(m_env.dir().write("other.ocio", ocioConfig({"raw", "lin", "srgb_tex"}, {}, R"(file_rules:
  - !<Rule> {name: textures, colorspace: raw, pattern: "*", extension: tx}
  - !<Rule> {name: Default, colorspace: raw}
)")));
    EXPECT_EQ(run({"guess", "--config", config, "wood.tx", "x_srgb_tex.exr"}).out, "wood.tx: srgb_tex\nx_srgb_tex.exr: lin\n");
    EXPECT_EQ(Json::parse(run({"guess", "--json", "wood.tx"}).out), Json::parse(R"([{"file": "wood.tx", "colorSpace": "raw"}])"));
}

TEST_F(ToolColour, InfoShowsRolesInactiveBuiltInAndHiddenNames)
{
    std::string const config = m_env.dir().write("artist.ocio", kArtistConfig);
    Json const json = Json::parse(run({"info", "--json", "--config", config}).out);
    EXPECT_EQ(json["builtIns"], Json::parse(R"(["linear", "sRGB", "Rec709"])"));
    EXPECT_EQ(json["inactiveColorSpaces"], Json::parse(R"(["old"])"));
    EXPECT_EQ(json["hidden"], Json::parse(R"([{"name": "SRGB", "reason": "shadowed by the built-in 'sRGB'"}])"));
    EXPECT_EQ(json["roles"][0], Json::parse(R"({"name": "color_picking", "colorSpace": "srgb_tex"})"));
    std::string const text = run({"info", "--config", config}).out;
    EXPECT_TRUE(Strutil::contains(text, "  linear*   sRGB*     Rec709*   lin       srgb_tex  tone\n")) << text;
    EXPECT_TRUE(Strutil::contains(text, "\n  SRGB  shadowed by the built-in 'sRGB'\n")) << text;
    EXPECT_TRUE(Strutil::contains(text, "\n  scene_linear   lin\n")) << text;
}

/// Writes an HDR half-float image with alpha: grey 16 and 4 first, then
/// colours up to 16; some alpha 0.5.
void writeHdr(std::string const& path)
{
    std::vector<float> pixels{16.0f, 16.0f, 16.0f, 0.5f, 4.0f, 4.0f, 4.0f, 1.0f};
    for (int i = 2; i < 16; ++i) {
        float const v = 0.01f * static_cast<float>(i * i * i % 1700);
        pixels.insert(pixels.end(), {v, v * 0.5f, 16.0f - v, i % 3 == 0 ? 0.5f : 1.0f});
    }
    OIIO::ImageBuf image(OIIO::ImageSpec(4, 4, 4, OIIO::TypeDesc::FLOAT), pixels.data());
    image.set_write_format(OIIO::TypeDesc::HALF);
    ASSERT_TRUE(image.write(path)) << image.geterror();
}

TEST_F(ToolColour, ViewMatchesOiiotoolWithinOneCodeValue)
{
    if (!installed("oiiotool")) {
        GTEST_SKIP() << "oiiotool is not installed";
    }
    std::string const input = file("hdr.exr");
    writeHdr(input);
    std::string const own = m_env.dir().write("artist.ocio", kArtistConfig);
    // Config, from space, display, view, looks; empty display and view are the defaults.
    std::vector<Names> cases{{own, "scene", "", "", ""}, {own, "lin", "Monitor", "standard", "Bright"}};
    for (std::string const& config : sharedConfigs()) {
        Json const check = Json::parse(run({"check", "--json", "--config", config}).out);
        if (check["ok"] == true) {
            cases.push_back({config, "scene_linear", check["defaultDisplay"], check["defaultView"], ""});
        }
    }
    for (Names const& c : cases) {
        SCOPED_TRACE(c[0] + " " + c[2] + " " + c[3] + " " + c[4]);
        Words words{"view", "--config", c[0], "--from", c[1], input, file("ours.png")};
        for (auto const& [option, value] : {std::pair{"--display", c[2]}, {"--view", c[3]}, {"--look", c[4]}}) {
            if (!value.empty()) {
                words.insert(words.begin() + 1, {option, value});
            }
        }
        Outcome const viewed = run(words);
        ASSERT_EQ(viewed.code, 0) << viewed.err;
        std::string const display = c[2].empty() ? "Monitor" : c[2];
        std::string const view = c[3].empty() ? "Tone" : c[3] == "standard" ? "Standard" : c[3];
        ASSERT_EQ(shell("oiiotool \"$2\" --colorconfig \"$3\" --ociodisplay:from=\"$4\":looks=\"$5\" \"$6\" \"$7\" -o \"$8\"",
                        {input, c[0], c[1] == "scene" ? "lin" : c[1], c[4], display, view, file("theirs.png")}).code, 0);
        std::vector<float> const a = floatsOf(readImage(file("ours.png")));
        std::vector<float> const b = floatsOf(readImage(file("theirs.png")));
        ASSERT_EQ(a.size(), b.size());
        for (std::size_t i = 0; i < a.size(); ++i) {
            EXPECT_LE(std::abs(a[i] - b[i]), 1.0f / 255.0f + 1e-6f) << "value " << i;
        }
        EXPECT_NEAR(a[3], 0.5f, 1.0f / 255.0f);  // alpha kept
    }
}

TEST_F(ToolColour, ViewToneMapsKeepsAlphaAndRefusesUnknownNames)
{
    std::string const config = m_env.dir().write("artist.ocio", kArtistConfig);
    std::string const input = file("hdr.exr");
    writeHdr(input);
    ASSERT_EQ(run({"view", "--config", config, "--from", "lin", input, file("out.exr")}).code, 0);
    std::vector<float> const out = floatsOf(readImage(file("out.exr")));
    // Grey 16 and 4 tone-map to different values below 1; they do not clip.
    EXPECT_LT(out[0], 1.0f);
    EXPECT_LT(out[4], out[0]);
    EXPECT_EQ(out[3], 0.5f);
    EXPECT_EQ(out[63], 0.5f);
    std::string const before = readFile(file("out.exr"));
    std::vector<std::pair<Words, std::string>> const refusals{
        {{"--from", "lin", "--display", "{TV}"}, "unknown display '{TV}'; the config's displays: 'Monitor'"},
        {{"--from", "lin", "--view", "Film{1}"},
         "unknown view 'Film{1}' of the display 'Monitor'; its views: 'Tone', 'Standard'"},
        {{"--from", "lin", "--look", "Bright,{warm}"}, "unknown look '{warm}'; the config's looks: 'Bright'"},
        {{"--from", "Rec709"}, "'Rec709' is a built-in colour space that this config does not have; the display "
                               "transform needs one of the config's"},
    };
    for (auto const& [extra, message] : refusals) {
        Words words{"view", "--config", config};
        words.insert(words.end(), extra.begin(), extra.end());
        words.insert(words.end(), {input, file("out.exr")});
        Outcome const refused = run(words);
        EXPECT_EQ(refused.code, 1);
        EXPECT_EQ(refused.err, "colorconfig: error: " + message + "\n");
    }
    EXPECT_EQ(run({"view", "--from", "linear", input, file("out.exr")}).err,
              "colorconfig: error: the built-in colour spaces have no displays or views; give a config with --config\n");
    EXPECT_EQ(run({"view", "--config", config, "--from", "lin", file("out.exr"), file("./out.exr")}).code, 1);
    EXPECT_EQ(readFile(file("out.exr")), before);
}

TEST_F(ToolColour, CheckVerdictAgreesWithOciocheck)
{
    if (!installed("ociocheck")) {
        GTEST_SKIP() << "ociocheck is not installed";
    }
    auto const broken = [this](std::string const& name, std::string const& from, std::string const& to) {
        return m_env.dir().write(name, Strutil::replace(kArtistConfig, from, to));
    };
    Names configs{m_env.dir().write("artist.ocio", kArtistConfig),
                  broken("lut.ocio", "!<ExponentTransform> {value: 2.2}", "!<FileTransform> {src: gone.spi1d}"),
                  broken("look.ocio", "!<MatrixTransform> {matrix: [2, 0, 0, 0, 0, 2, 0, 0, 0, 0, 2, 0, 0, 0, 0, 1]}",
                         "!<FileTransform> {src: gone.cube}"),
                  broken("role.ocio", "color_picking: srgb_tex", "color_picking: nowhere"),
                  broken("view.ocio", "colorspace: tone", "colorspace: nowhere")};
    Names const shared = sharedConfigs();
    configs.insert(configs.end(), shared.begin(), shared.end());
    for (std::string const& config : configs) {
        Outcome const ours = run({"check", "--config", config});
        Outcome const theirs = shell("ociocheck --iconfig \"$2\"", {config});
        EXPECT_EQ(ours.code, theirs.code) << config << "\n" << ours.out << theirs.out;
    }
    Json const lut = Json::parse(run({"check", "--json", "--config", configs[1]}).out);
    EXPECT_EQ(lut["ok"], false);
    EXPECT_EQ(lut["failedColorSpaces"][0]["name"], "SRGB");
    EXPECT_TRUE(Strutil::contains(lut["errors"][0].get<std::string>(), "'gone.spi1d' could not be located"));
    Json const fine = Json::parse(run({"check", "--json", "--config", configs[0]}).out);
    EXPECT_EQ(fine["ok"], true);
    EXPECT_EQ(fine["hidden"][0]["name"], "SRGB");
    EXPECT_EQ(fine["fileRules"][2], Json::parse(R"({"file": "texture.png", "colorSpace": "lin", "rule": "Default"})"));
    EXPECT_EQ(fine["defaultView"], "Tone");
    Outcome const none = run({"check"});
    EXPECT_EQ(none.code, 1);
    EXPECT_TRUE(Strutil::contains(none.out, "no config file is in use")) << none.out;
}

} // namespace
} // namespace verra_test
