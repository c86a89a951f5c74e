// The built program, each case in processes of its own: what needs a fresh
// process ($OCIO is read once per process), signals and file-size limits.

#include "tool_test.h"

#include <filesystem>

namespace verra_test {
namespace {

using ToolProgram = ToolTest;

/// The temporary files left in `folder`, removed.
int removeTemporaries(std::string const& folder)
{
    int count = 0;
    for (auto const& entry : std::filesystem::directory_iterator(folder)) {
        std::string const path = entry.path().string();
        count += Strutil::ends_with(path, ".tmp") && std::filesystem::remove(path);
    }
    return count;
}

TEST_F(ToolProgram, InfoAndGuessFollowTheOcioVariable)
{
    std::string const config = sampleConfig(R"(file_rules:
  - !<Rule> {name: plates, pattern: "*plate*", extension: "*", colorspace: srgb_tex}
  - !<Rule> {name: Default, colorspace: raw}
)");
    Outcome const ran = shell("\"$1\" info && export OCIO=\"$2\" && \"$1\" guess a_plate.exr other.exr", {config});
    EXPECT_TRUE(ran.code == 0 && Strutil::contains(ran.out, "In use: the built-in colour spaces only") &&
                Strutil::ends_with(ran.out, "a_plate.exr: srgb_tex\nother.exr: raw\n"))
        << ran.out << ran.err;
}

TEST_F(ToolProgram, WriteErrorsAndKillsLeaveTheOldOutput)
{
    writeNoise(file("in.exr"), 256, 4, OIIO::TypeDesc::FLOAT);
    std::filesystem::create_directories(file("out"));
    std::string const convert = "\"$1\" convert --from linear --to ";
    for (char const* name : {"old.png", "old.exr", "old.tif", "old.jpg"}) {
        std::string const output = file("out/") + name;
        ASSERT_EQ(shell(convert + "sRGB \"$2\" \"$3\"", {file("in.exr"), output}).code, 0);
        std::string const before = readFile(output);
        // A file-size limit of 8 kB: every format's write fails part-way.
        Outcome const result =
            shell("ulimit -f 16; " + convert + "Rec709 \"$2\" \"$3\"", {file("in.exr"), output});
        EXPECT_TRUE(result.code == 1 && readFile(output) == before) << name << result.err;
        EXPECT_EQ(removeTemporaries(file("out")), 0) << name;
    }
    writeNoise(file("big.exr"), 1024, 4, OIIO::TypeDesc::FLOAT);
    std::string const before = readFile(file("out/old.exr"));
    // Killed as soon as its temporary file appears, mid-write: a KILL
    // leaves the temporary file, a TERM removes it; the old output stays.
    for (char const* signal : {"KILL", "TERM"}) {
        Outcome const result =
            shell(convert + "sRGB \"$2\" \"$3\" & pid=$!; until ls \"$3\".*.tmp >/dev/null "
                            "2>&1; do :; done; kill -$4 $pid; wait $pid",
                  {file("big.exr"), file("out/old.exr"), signal});
        bool const killed = signal[0] == 'K';
        EXPECT_TRUE(result.code == 128 + (killed ? 9 : 15) &&
                    readFile(file("out/old.exr")) == before)
            << signal << result.err;
        EXPECT_EQ(removeTemporaries(file("out")), killed ? 1 : 0) << signal;
    }
}

} // namespace
} // namespace verra_test
