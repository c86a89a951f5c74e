// The built program in processes of its own: signals and file-size limits
// end a write part-way.

#include "tool_test.h"

#include <filesystem>

namespace verra_test {
namespace {

using ToolProgram = ToolTest;

TEST_F(ToolProgram, WriteErrorsAndKillsLeaveTheOldOutput)
{
    /// The temporary files left in the test's folder, removed.
    auto const removeTemporaries = [this] {
        int count = 0;
        for (auto const& entry : std::filesystem::directory_iterator(m_env.dir().path())) {
            count += Strutil::ends_with(entry.path().string(), ".tmp") && std::filesystem::remove(entry.path());
        }
        return count;
    };
    writeNoise(file("in.exr"), 256, 4, OIIO::TypeDesc::FLOAT);
    std::string const convert = "\"$1\" convert --from linear --to ";
    std::string const output = file("old.exr");
    ASSERT_EQ(shell(convert + "sRGB \"$2\" \"$3\"", {file("in.exr"), output}),
              Outcome(0, file("in.exr") + " -> " + output + "\n", ""));
    std::string const before = readFile(output);
    // A file-size limit of 8 kB: the write fails part-way.
    EXPECT_EQ(std::get<0>(shell("ulimit -f 16; " + convert + "Rec709 \"$2\" \"$3\"", {file("in.exr"), output})), 1);
    EXPECT_EQ(readFile(output), before);
    EXPECT_EQ(removeTemporaries(), 0);
    writeNoise(file("big.exr"), 1024, 4, OIIO::TypeDesc::FLOAT);
    // Killed as soon as its temporary file appears, mid-write: a KILL
    // leaves the temporary file, a TERM removes it; the old output stays.
    for (auto const& [signal, number, left] : {std::tuple{"KILL", 9, 1}, {"TERM", 15, 0}}) {
        Outcome const result = shell(convert + "Rec709 \"$2\" \"$3\" & pid=$!; until ls \"$3\".*.tmp >/dev/null "
                                               "2>&1; do :; done; kill -$4 $pid; wait $pid",
                                     {file("big.exr"), output, signal});
        EXPECT_EQ(std::get<0>(result), 128 + number) << signal << std::get<2>(result);
        EXPECT_EQ(readFile(output), before) << signal;
        EXPECT_EQ(removeTemporaries(), left) << signal;
    }
}

} // namespace
} // namespace verra_test
