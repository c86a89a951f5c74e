// `convert` on files: --out-dir, missing, unreadable and unwritable files,
// refusals, exit codes, and the progress line on a terminal only.

#include "test_images.h"
#include "tool_test.h"

#include <filesystem>

namespace verra_test {
namespace {

namespace stdfs = std::filesystem;

using ToolConvertFiles = ToolTest;

constexpr int kSize = 4;

/// Writes a small 8-bit image of `channels` to `path`; returns the path.
std::string writePng(std::string const& path, int channels = 3)
{
    writeBytes(path, kSize, kSize, channels, byteRamp(kSize, kSize, channels));
    return path;
}

std::vector<std::string> convertArgs(std::vector<std::string> const& rest)
{
    std::vector<std::string> args{"convert", "--from", "sRGB", "--to", "linear"};
    args.insert(args.end(), rest.begin(), rest.end());
    return args;
}

bool exists(std::string const& path) { return stdfs::exists(path); }

TEST_F(ToolConvertFiles, OutDirWritesEachInputUnderItsOwnName)
{
    std::string const a = writePng(m_dir.mkdir("one") + "/a.png");
    std::string const b = writePng(m_dir.mkdir("two") + "/b.png");
    std::string const out = m_dir.mkdir("out");
    ToolResult const result = run(convertArgs({"--out-dir", out, a, b}));
    EXPECT_EQ(result.exitCode, 0) << result.err;
    EXPECT_EQ(result.out, a + " -> " + out + "/a.png\n" + b + " -> " + out + "/b.png\n");
    EXPECT_EQ(result.err, "");
    EXPECT_EQ(readImageFile(out + "/a.png").bytes, readImageFile(out + "/b.png").bytes);
    EXPECT_NE(readImageFile(out + "/a.png").bytes, readImageFile(a).bytes);
}

TEST_F(ToolConvertFiles, MissingInputFailsAndTheOthersAreStillConverted)
{
    std::string const a = writePng(file("a.png"));
    std::string const missing = file("missing.png");
    std::string const b = writePng(file("b.png"));
    std::string const out = m_dir.mkdir("out");
    ToolResult const result = run(convertArgs({"--out-dir", out, a, missing, b}));
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_EQ(result.out, a + " -> " + out + "/a.png\n" + b + " -> " + out + "/b.png\n");
    EXPECT_EQ(result.err.rfind("colorconfig: error: cannot read '" + missing + "': ", 0), 0u) << result.err;
    EXPECT_EQ(splitLines(result.err).size(), 1u);
    EXPECT_TRUE(exists(out + "/a.png"));
    EXPECT_TRUE(exists(out + "/b.png"));
    EXPECT_FALSE(exists(out + "/missing.png"));
}

TEST_F(ToolConvertFiles, UnreadableInputsFail)
{
    std::string const garbage = m_dir.write("garbage.png", "this is not an image");
    std::string const folder = m_dir.mkdir("folder.png");
    for (std::string const& input : {garbage, folder}) {
        ToolResult const result = run(convertArgs({input, file("out.png")}));
        EXPECT_EQ(result.exitCode, 1) << input;
        EXPECT_EQ(result.out, "");
        EXPECT_EQ(result.err.rfind("colorconfig: error: cannot read '" + input + "': ", 0), 0u) << result.err;
        EXPECT_FALSE(exists(file("out.png")));
    }
}

TEST_F(ToolConvertFiles, UnwritableOutputsFail)
{
    std::string const input = writePng(file("in.png"));
    for (std::string const& output : {file("no/such/folder/out.png"), file("out.unknownformat")}) {
        ToolResult const result = run(convertArgs({input, output}));
        EXPECT_EQ(result.exitCode, 1) << output;
        EXPECT_EQ(result.out, "");
        EXPECT_EQ(result.err.rfind("colorconfig: error: cannot write '" + output + "': ", 0), 0u) << result.err;
    }
}

TEST_F(ToolConvertFiles, MissingOutDirFails)
{
    std::string const input = writePng(file("in.png"));
    ToolResult const result = run(convertArgs({"--out-dir", file("nowhere"), input}));
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_EQ(result.out, "");
    EXPECT_EQ(result.err,
              "colorconfig: error: output folder '" + file("nowhere") + "' does not exist or is not a folder\n");
}

TEST_F(ToolConvertFiles, OutputNeverReplacesItsInput)
{
    std::string const input = writePng(file("in.png"));
    ImageFile const before = readImageFile(input);
    ToolResult const same = run(convertArgs({input, input}));
    EXPECT_EQ(same.exitCode, 1);
    EXPECT_EQ(same.err, "colorconfig: error: '" + input + "' would replace the input '" + input +
                            "'; choose another output\n");
    ToolResult const intoOwnFolder = run(convertArgs({"--out-dir", m_dir.path(), input}));
    EXPECT_EQ(intoOwnFolder.exitCode, 1);
    EXPECT_EQ(readImageFile(input).bytes, before.bytes);
    // Nor an output over another input of the same run.
    std::string const other = writePng(m_dir.mkdir("out") + "/in.png", 4);
    ImageFile const otherBefore = readImageFile(other);
    ToolResult const overAnother = run(convertArgs({"--out-dir", m_dir.path() + "/out", input, other}));
    EXPECT_EQ(overAnother.exitCode, 1);
    EXPECT_EQ(splitLines(overAnother.err)[0], "colorconfig: error: '" + other + "' would replace the input '" +
                                                  other + "'; choose another output");
    EXPECT_EQ(readImageFile(other).bytes, otherBefore.bytes);
}

TEST_F(ToolConvertFiles, TwoInputsOfTheSameNameDoNotOverwriteEachOther)
{
    std::string const first = writePng(m_dir.mkdir("one") + "/x.png", 3);
    std::string const second = writePng(m_dir.mkdir("two") + "/x.png", 4);
    std::string const out = m_dir.mkdir("out");
    ToolResult const result = run(convertArgs({"--out-dir", out, first, second}));
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_EQ(result.out, first + " -> " + out + "/x.png\n");
    EXPECT_EQ(result.err, "colorconfig: error: '" + out + "/x.png' was already written by an earlier input; '" +
                              second + "' is skipped\n");
    EXPECT_EQ(readImageFile(out + "/x.png").channels, 3);
}

TEST_F(ToolConvertFiles, UnknownColourSpaceFailsBeforeAnyFileIsWritten)
{
    std::string const input = writePng(file("in.png"));
    ToolResult const result = run({"convert", "--from", "sRGB", "--to", "lienar", input, file("out.png")});
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_EQ(result.out, "");
    EXPECT_EQ(result.err, "colorconfig: error: unknown colour space 'lienar'; closest: 'linear'\n");
    EXPECT_FALSE(exists(file("out.png")));
}

TEST_F(ToolConvertFiles, FloatConversionWithoutProcessorFails)
{
    std::string const input = file("in.exr");
    writeFloats(input, kSize, kSize, 3, OIIO::TypeDesc::FLOAT, floatRamp(kSize, kSize, 3));
    ToolResult const result = run({"convert", "--from", "Rec709", "--to", "sRGB", input, file("out.exr")});
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_EQ(result.out, "");
    EXPECT_EQ(result.err, "colorconfig: error: '" + input +
                              "' was not converted: cannot convert from 'Rec709' to 'sRGB' with this config\n");
    EXPECT_FALSE(exists(file("out.exr")));
}

TEST_F(ToolConvertFiles, ProgressLineOnlyWhenStandardErrorIsATerminal)
{
    std::string const a = writePng(file("a.png"));
    std::string const b = writePng(file("b.png"));
    std::string const out = m_dir.mkdir("out");

    ToolResult const terminal = run(convertArgs({"--out-dir", out, a, b}), true);
    EXPECT_EQ(terminal.exitCode, 0);
    EXPECT_EQ(terminal.out, a + " -> " + out + "/a.png\n" + b + " -> " + out + "/b.png\n");
    EXPECT_TRUE(contains(terminal.err, "\r[1/2] converting " + a + "\033[K")) << terminal.err;
    EXPECT_TRUE(contains(terminal.err, "\r[2/2] converting " + b + "\033[K")) << terminal.err;
    // The line is cleared at the end.
    EXPECT_EQ(terminal.err.substr(terminal.err.size() - 4), "\r\033[K");

    ToolResult const pipe = run(convertArgs({"--out-dir", out, a, b}));
    EXPECT_EQ(pipe.exitCode, 0);
    EXPECT_EQ(pipe.out, terminal.out);
    EXPECT_EQ(pipe.err, "");
}

TEST_F(ToolConvertFiles, NoProgressLineForOneFile)
{
    std::string const a = writePng(file("a.png"));
    ToolResult const terminal = run(convertArgs({a, file("out.png")}), true);
    EXPECT_EQ(terminal.exitCode, 0);
    EXPECT_EQ(terminal.err, "");
}

} // namespace
} // namespace verra_test
