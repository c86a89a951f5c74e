// The built program, each case in processes of its own: what needs a fresh
// process ($OCIO is read once per process), signals, file-size limits and a
// terminal.

#include "tool_harness.h"

#include <OpenImageIO/imagebufalgo.h>
#include <OpenImageIO/strutil.h>

#include <filesystem>

namespace verra_test {
namespace {

namespace Strutil = OIIO::Strutil;
using ToolProgram = ToolTest;

void writeNoise(std::string const& path, int size)
{
    OIIO::ImageBuf noise(OIIO::ImageSpec(size, size, 4, OIIO::TypeDesc::FLOAT));
    OIIO::ImageBufAlgo::noise(noise, "uniform", 0.0f, 1.0f, false);
    ASSERT_TRUE(noise.write(path)) << noise.geterror();
}

/// The temporary files left in `folder`, removed.
int removeTemporaries(std::string const& folder)
{
    int count = 0;
    for (auto const& entry : std::filesystem::directory_iterator(folder)) {
        if (Strutil::ends_with(entry.path().string(), ".tmp")) {
            std::filesystem::remove(entry.path());
            ++count;
        }
    }
    return count;
}

TEST_F(ToolProgram, InfoAndGuessFollowTheOcioVariable)
{
    Outcome const none = shell("\"$1\" info");
    EXPECT_EQ(none.code, 0);
    EXPECT_TRUE(Strutil::contains(none.out, "In use: the built-in colour spaces only (linear, sRGB, Rec709).\n"));
    std::string const config = sampleConfig("file_rules:\n  - !<Rule> {name: plates, pattern: \"*plate*\", extension: \"*\", "
                                            "colorspace: srgb_tex}\n  - !<Rule> {name: Default, colorspace: raw}\n");
    Outcome const guess = shell("OCIO=\"$2\" \"$1\" guess a_plate.exr other.exr && OCIO=\"$2\" \"$1\" info", {config});
    EXPECT_EQ(guess.code, 0) << guess.err;
    EXPECT_TRUE(Strutil::starts_with(guess.out, "a_plate.exr: srgb_tex\nother.exr: raw\nConfig\n  Using " + config))
        << guess.out;
}

TEST_F(ToolProgram, WriteErrorsAndKillsLeaveTheOldOutput)
{
    writeNoise(file("in.exr"), 256);
    std::filesystem::create_directories(file("out"));
    for (char const* name : {"old.png", "old.exr", "old.tif", "old.jpg"}) {
        std::string const output = file("out/") + name;
        ASSERT_EQ(shell("\"$1\" convert --from linear --to sRGB \"$2\" \"$3\"", {file("in.exr"), output}).code, 0);
        std::string const before = readFile(output);
        // A file-size limit of 8 kB: every format's write fails part-way.
        Outcome const result = shell("ulimit -f 16; \"$1\" convert --from linear --to Rec709 \"$2\" \"$3\"",
                                 {file("in.exr"), output});
        EXPECT_EQ(result.code, 1) << name << result.err;
        EXPECT_EQ(readFile(output), before) << name;
        EXPECT_EQ(removeTemporaries(file("out")), 0) << name;
    }
    writeNoise(file("big.exr"), 1024);
    std::string const before = readFile(file("out/old.exr"));
    // Killed as soon as its temporary file appears, mid-write: a KILL
    // leaves the temporary file, a TERM removes it; the old output stays.
    for (char const* signal : {"KILL", "TERM"}) {
        Outcome const result = shell("\"$1\" convert --from linear --to sRGB \"$2\" \"$3\" & pid=$!; "
                                 "until ls \"$3\".*.tmp >/dev/null 2>&1; do :; done; kill -$4 $pid; wait $pid",
                                 {file("big.exr"), file("out/old.exr"), signal});
        EXPECT_EQ(result.code, 128 + (signal[0] == 'K' ? 9 : 15)) << signal << result.err;
        EXPECT_EQ(readFile(file("out/old.exr")), before) << signal;
        EXPECT_EQ(removeTemporaries(file("out")), signal[0] == 'K' ? 1 : 0) << signal;
    }
}

TEST_F(ToolProgram, ProgressLineOnlyOnATerminal)
{
    writeNoise(file("a.exr"), 8);
    writeNoise(file("b.exr"), 8);
    std::filesystem::create_directories(file("out"));
    std::string const convert = "\"$T\" convert --from linear --to sRGB --out-dir \"$O\" \"$A\" \"$B\"";
    std::vector<std::string> const args{file("out"), file("a.exr"), file("b.exr")};
    std::string const variables = "export T=\"$1\" O=\"$2\" A=\"$3\" B=\"$4\"; ";
    Outcome const piped = shell(variables + convert, args);
    EXPECT_EQ(piped.code, 0);
    EXPECT_EQ(piped.err, "");
    Outcome const terminal = shell(variables + "script -qec '" + convert + "' /dev/null", args);
    EXPECT_EQ(terminal.code, 0) << terminal.err;
    EXPECT_TRUE(Strutil::contains(terminal.out, "\r[2/2] converting " + file("b.exr"))) << terminal.out;
}

} // namespace
} // namespace verra_test
