// The names artists type, display/view transforms compared with oiiotool,
// and config checks compared with ociocheck.

#include "tool_test.h"

#include <nlohmann/json.hpp>

namespace verra_test {
namespace {

using Json = nlohmann::json;
using ToolColour = ToolTest;

/// The shared real configs (.ocio and .ocioz), or none when ../shared is not beside the checkout.
Names sharedConfigs()
{
    char const* folder = std::getenv("VERRA_SHARED_CONFIGS");
    Names found;
    std::error_code none;
    for (auto const& entry : std::filesystem::recursive_directory_iterator(folder ? folder : "/none", none)) {
        if (Strutil::starts_with(entry.path().extension().string(), ".ocio")) {
            found.push_back(entry.path().string());
        }
    }
    return found;
}

TEST_F(ToolColour, ResolvesAliasesRolesAndInactiveSpacesAndSaysHow)
{
    std::string const config = sampleConfig();
    EXPECT_EQ(run({"find", "--config", config, "scene", "COLOR_PICKING", "old", "srgb", "lin"}),
              (Outcome{0, "scene: lin\nCOLOR_PICKING: srgb_tex\nold: old\nsrgb: sRGB\nlin: lin\n",
                       "colorconfig: 'scene': alias of 'lin'\ncolorconfig: 'COLOR_PICKING': role color_picking → "
                       "'srgb_tex'\ncolorconfig: 'old': inactive\ncolorconfig: 'srgb': built-in, shadows the "
                       "config's 'SRGB'\n"}));
    Json const json = Json::parse(run({"find", "--json", "--config", config, "linear_rec709", "srgb_texure"}).out);
    EXPECT_EQ(json, Json::parse(R"([{"name": "linear_rec709", "colorSpace": "lin", "how": "alias of 'lin'",
        "closest": []}, {"name": "srgb_texure", "colorSpace": null, "how": "", "closest": ["srgb_tex", "sRGB"]}])"));
    // A built-in that converts to nothing of the config: found, but never suggested.
    std::string const plain = m_env.dir().write("plain.ocio", ocioConfig({"ACEScg"}));
    EXPECT_EQ(run({"find", "--config", plain, "srgb", "srgbb"}),
              (Outcome{1, "srgb: sRGB\n", "colorconfig: 'srgb': built-in, converts only to the other built-ins "
                       "under this config\ncolorconfig: error: unknown colour space 'srgbb' ('colorconfig info' "
                       "lists them all)\n"}));
    // The same colour through aliases, roles and canonical names.
    Outcome const byAlias = run({"color", "--config", config, "--from", "srgb_texture", "--to", "scene", "0.5", "0.2", "0.9"});
    EXPECT_EQ(byAlias.out, run({"color", "--config", config, "--from", "srgb_tex", "--to", "lin", "0.5", "0.2", "0.9"}).out);
    EXPECT_EQ(Json::parse(run({"color", "--json", "--config", config, "--from", "old", "--to", "lin", "0.5", "0", "1", "0.25"}).out),
              Json::parse(R"({"from": "old", "to": "lin", "route": "processor", "input": [0.5, 0, 1, 0.25],
                  "output": [)" + fmt::format("{:.17g}", std::pow(0.5f, 1.8f)) + R"(, 0, 1, 0.25]})"));
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
    std::string const input = file("hdr.exr");
    writeHdr(input);
    std::string const own = sampleConfig();
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
        if (&c == &cases[0]) {
            std::filesystem::copy_file(file("ours.png"), file("toned.png"));
        }
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
        EXPECT_NEAR(a[3], 0.5f, 1.0f / 255.0f); // alpha kept
    }
    // The default view of the sample config tone-maps: grey 4 stays below 1 and below grey 16.
    std::vector<float> const toned = floatsOf(readImage(file("toned.png")));
    EXPECT_TRUE(toned[4] < 1.0f && toned[4] < toned[0]) << toned[0] << " " << toned[4];
}

TEST_F(ToolColour, ViewRefusesUnknownNamesAndItsOwnInput)
{
    std::string const config = sampleConfig();
    std::string const input = file("hdr.exr");
    writeHdr(input);
    ASSERT_EQ(run({"view", "--config", config, "--from", "lin", input, file("out.exr")}).code, 0);
    std::string const before = readFile(file("out.exr"));
    std::vector<std::pair<Words, std::string>> const refusals{
        {{"--from", "lin", "--display", "{TV}"}, "unknown display '{TV}'; the config's displays: 'Monitor'"},
        {{"--from", "lin", "--view", "Film{1}"},
         "unknown view 'Film{1}' of the display 'Monitor'; its views: 'Tone', 'Standard', 'Raw'"},
        {{"--from", "lin", "--look", "Bright,{warm}"}, "unknown look '{warm}'; the config's looks: 'Bright'"},
        {{"--from", "Rec709"}, "'Rec709' is a built-in colour space that this config does not have; the display "
                               "transform needs one of the config's"},
    };
    for (auto const& [extra, message] : refusals) {
        Words words{"view", "--config", config};
        words.insert(words.end(), extra.begin(), extra.end());
        words.insert(words.end(), {input, file("out.exr")});
        EXPECT_EQ(run(words), (Outcome{1, "", "colorconfig: error: " + message + "\n"}));
    }
    EXPECT_EQ(run({"view", "--from", "linear", input, file("out.exr")}).err,
              "colorconfig: error: the built-in colour spaces have no displays or views; give a config with --config\n");
    EXPECT_EQ(run({"view", "--config", config, "--from", "lin", file("out.exr"), file("./out.exr")}).code, 1);
    EXPECT_EQ(readFile(file("out.exr")), before);
}

TEST_F(ToolColour, CheckVerdictAgreesWithOciocheck)
{
    auto const broken = [this](std::string const& name, std::string const& from, std::string const& to) {
        return m_env.dir().write(name, Strutil::replace(readFile(sampleConfig()), from, to));
    };
    Names configs{sampleConfig(),
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
    EXPECT_EQ(fine["fileRules"][2], Json::parse(R"({"file": "texture.png", "colorSpace": "default", "rule": "Default"})"));
    EXPECT_EQ(fine["defaultView"], "Tone");
    Outcome const none = run({"check"});
    EXPECT_EQ(none.code, 1);
    EXPECT_TRUE(Strutil::contains(none.out, "no config file is in use")) << none.out;
}

} // namespace
} // namespace verra_test
