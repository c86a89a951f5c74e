// convert, view and preview refuse an output that would replace an input or
// an earlier output, and take --unassociated-alpha.

#include "tool_test.h"

#include <filesystem>

namespace verra_test {
namespace {

using OIIO::TypeDesc;
using ToolFiles = ToolTest;

TEST_F(ToolFiles, NoOutputReplacesAnInputOrAnEarlierOutput)
{
    for (char const* folder : {"a", "b", "out"}) {
        std::filesystem::create_directories(file(folder));
    }
    std::string const a = file("a/x.png");
    writeNoise(a, 8, 3, TypeDesc::UINT8);
    std::filesystem::copy_file(a, file("b/x.png"));
    std::string const before = readFile(a);
    std::tuple<Words, std::string, std::string> const cases[] = {
        {{"--out-dir", file("out"), a, file("b/x.png")},
         a + " -> " + file("out/x.png") + "\n",
         "'" + file("out/x.png") + "' was already written by an earlier input; '" + file("b/x.png") + "' is skipped"},
        {{"--out-dir", file("a"), a}, "", "'" + a + "' would replace its own input; choose another output"},
        {{"--out-dir", file("no"), a}, "", "output folder '" + file("no") + "' does not exist or is not a folder"},
    };
    for (auto const& [tail, out, err] : cases) {
        Words words{"convert", "--from", "linear", "--to", "sRGB"};
        words.insert(words.end(), tail.begin(), tail.end());
        EXPECT_EQ(run(words), Outcome(1, out, "colorconfig: error: " + err + "\n"));
    }
    EXPECT_EQ(run({"preview", a, file("./a/x.png")}),
              Outcome(1, "",
                      "colorconfig: error: '" + file("./a/x.png") +
                          "' would replace its own input; choose another output\n"));
    EXPECT_EQ(readFile(a), before);
}

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

} // namespace
} // namespace verra_test
