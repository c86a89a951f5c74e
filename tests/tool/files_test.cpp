// The file options: output choices against oiiotool's, --unassociated-alpha,
// a sequence's progress and summary, and colour operations that refuse bad
// input writing nothing.

#include "tool_test.h"

#include <nlohmann/json.hpp>

#include <filesystem>

namespace verra_test {
namespace {

using OIIO::TypeDesc;
using ToolFiles = ToolTest;

TEST_F(ToolFiles, UnassociatedAlphaChangesHowColoursAreRead)
{
    writeNoise(file("in.exr"), 8, 4, TypeDesc::FLOAT);
    Words words{"convert", "--from", "linear", "--to", "sRGB", file("in.exr"), file("plain.exr")};
    ASSERT_EQ(run(words), Outcome(0, file("in.exr") + " -> " + file("plain.exr") + "\n", ""));
    words.back() = file("unassociated.exr");
    words.insert(words.begin() + 1, "--unassociated-alpha");
    ASSERT_EQ(std::get<0>(run(words)), 0);
    EXPECT_NE(floatsOf(readImage(file("plain.exr"))), floatsOf(readImage(file("unassociated.exr"))));
}

TEST_F(ToolFiles, OutputChoicesGiveOiiotoolsPixelsAndTypes)
{
    writeNoise(file("in.exr"), 16, 3, TypeDesc::FLOAT);
    writeNoise(file("in.png"), 16, 3, TypeDesc::UINT8);
    std::tuple<std::string, std::string, std::string, std::string, TypeDesc> const cases[] = {
        {"in.exr", "-d half --compression piz", "-d half --compression piz", "x.exr", TypeDesc::HALF},
        {"in.exr", "--dither", "--dither -d uint8", "x.png", TypeDesc::UINT8},
        {"in.exr", "--quality 40", "--compression jpeg:40", "x.jpg", TypeDesc::UINT8},
        {"in.png", "-d float", "-d float", "x.tif", TypeDesc::FLOAT},
        {"in.png", "-d uint10", "-d uint10", "x.tif", TypeDesc::UINT16},
    };
    for (auto const& [in, ours, theirs, out, type] : cases) {
        std::filesystem::remove_all(file("a"));
        std::filesystem::remove_all(file("b"));
        // The same name in both folders: oiiotool seeds its dither with it.
        EXPECT_EQ(std::get<0>(shell("cd \"$2\" && mkdir a b && cd a && \"$1\" convert --from sRGB --to linear " + ours +
                                        " ../" + in + " " + out + " && cd ../b && oiiotool ../" + in +
                                        " --colorconvert sRGB linear " + theirs + " -o " + out,
                                    {m_env.dir().path()})),
                  0)
            << ours;
        OIIO::ImageBuf const mine = readImage(file("a/" + out)), reference = readImage(file("b/" + out));
        EXPECT_EQ(floatsOf(mine), floatsOf(reference)) << ours;
        EXPECT_EQ(mine.nativespec().format, type) << ours;
        EXPECT_EQ(mine.nativespec().get_string_attribute("compression"),
                  reference.nativespec().get_string_attribute("compression"))
            << ours;
    }
}

TEST_F(ToolFiles, SequencesShowProgressOnlyOnATerminalAndSummariseInJson)
{
    for (std::string const frame : {"7", "8", "10"}) {
        writeNoise(file("in." + frame + ".png"), 4, 3, TypeDesc::UINT8);
    }
    std::string const convert = "\"$P\" convert --from auto --to linear \"$D\"/in.%d.png \"$D\"/out.@@.tif";
    Outcome const terminal =
        shell("export P=\"$1\" D=\"$2\"; script -qec '" + convert + "' /dev/null", {m_env.dir().path()});
    EXPECT_THAT(std::get<1>(terminal), ContainsRegex("\r3/3 frames  .* left\033\\[K"));
    Outcome const json = shell("P=\"$1\" D=\"$2\"; " + convert + " --update --json -v", {m_env.dir().path()});
    EXPECT_THAT(std::get<2>(json),
                HasSubstr("colorconfig: warning: '" + file("in.%d.png") + "' misses the frames 9\n"));
    EXPECT_THAT(std::get<2>(json), Not(HasSubstr("\r")));
    auto summary = nlohmann::json::parse(std::get<1>(json));
    EXPECT_EQ(summary["missing"],
              nlohmann::json::parse(R"([{"input": ")" + file("in.%d.png") + R"(", "frames": [9]}])"));
    EXPECT_EQ(summary["skipped"][2]["reason"],
              "'" + file("out.10.tif") + "' is not older than '" + file("in.10.png") + "'");
}

TEST_F(ToolFiles, ColourOperationsRefuseBadInputWritingNothing)
{
    std::string const config = sampleConfig(), in = file("in.exr"), out = file("out.exr");
    writeNoise(in, 8, 3, TypeDesc::FLOAT);
    // A matrix with no inverse: it applies forward, and only forward.
    std::string const flat = m_env.dir().write("flat.spimtx", "1 0 0 0\n0 1 0 0\n0 0 0 0\n");
    ASSERT_EQ(std::get<0>(run({"convert", "--lut", flat, in, file("flat.exr")})), 0);
    std::pair<Words, std::string> const cases[] = {
        {{"convert", "--lut", flat, "--invert", in, out},
         "cannot invert the LUT file '" + flat + "': Singular Matrix can't be inverted.\n"},
        {{"bake", "--config", config, "--from", "lin", "--to", "srgb_tex", file("x.icc")},
         "no LUT format writes '.icc' files; the formats: flame (.3dl), lustre (.3dl), "},
        {{"bake", "--config", config, "--from", "lin", "--to", "srgb_tex", "--size", "1", file("x.cube")},
         "the cube size must be from 2 to 129, not 1\n"},
        {{"view", "--config", config, "--from", "lni", "--inverse", "--context", "SHOT=a", in, out},
         "unknown colour space 'lni'; closest: 'lin'"},
    };
    for (auto const& [words, message] : cases) {
        auto const [code, printed, err] = run(words);
        EXPECT_EQ(code, 1) << words[0];
        EXPECT_THAT(err, StartsWith("colorconfig: error: " + message));
    }
    EXPECT_THAT(entriesOf(m_env.dir().path()), Not(Contains(AnyOf("out.exr", "x.icc", "x.cube"))));
}

} // namespace
} // namespace verra_test
