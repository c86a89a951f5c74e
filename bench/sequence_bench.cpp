// A 32-frame 2K half-float EXR sequence converted from "linear" to "sRGB":
// one `colorconfig convert` process for the whole sequence beside one
// `oiiotool --frames` process on the same frames, each timed whole, with its
// peak memory (GNU time's max RSS). A first check proves that both write the
// same pixels.

#include <OpenImageIO/filesystem.h>
#include <OpenImageIO/imagebufalgo.h>
#include <benchmark/benchmark.h>

#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>

extern char** environ;

namespace verra_bench {
namespace {

constexpr int kFirst = 1001;
constexpr int kFrames = 32;

/// The frames in.1001.exr ... in.1032.exr, 2048 × 1080 RGB half noise, in a
/// temporary folder that goes with it.
class Sequence {
public:
    Sequence() : m_dir(std::filesystem::temp_directory_path() / OIIO::Filesystem::unique_path("verra-sequence-%%%%%%"))
    {
        std::filesystem::create_directories(m_dir);
        for (int frame = kFirst; frame < kFirst + kFrames; ++frame) {
            OIIO::ImageBuf noise(OIIO::ImageSpec(2048, 1080, 3, OIIO::TypeDesc::FLOAT));
            OIIO::ImageBufAlgo::noise(noise, "uniform", 0.0f, 2.0f, false, frame);
            noise.set_write_format(OIIO::TypeDesc::HALF);
            noise.write(file("in." + std::to_string(frame) + ".exr"));
        }
    }
    ~Sequence() { std::filesystem::remove_all(m_dir); }
    Sequence(Sequence const&) = delete;
    Sequence& operator=(Sequence const&) = delete;

    std::string file(std::string const& name) const { return (m_dir / name).string(); }

private:
    std::filesystem::path m_dir;
};

Sequence const& sequence()
{
    static Sequence const frames;
    return frames;
}

/// The command lines of both sides, writing `prefix`.#.exr.
std::vector<std::string> colorconfigCommand(std::string const& prefix)
{
    return {VERRA_COLORCONFIG_EXE,
            "convert",
            "--from",
            "linear",
            "--to",
            "sRGB",
            sequence().file("in.#.exr"),
            sequence().file(prefix + ".#.exr")};
}

std::vector<std::string> oiiotoolCommand(std::string const& prefix)
{
    return {"oiiotool", "--frames", "1001-1032", sequence().file("in.#.exr"),       "--colorconvert",
            "linear",   "sRGB",     "-o",        sequence().file(prefix + ".#.exr")};
}

/// Runs `words` under GNU time with standard output discarded; false unless
/// it exits 0. `peakKb` gets its max RSS. GNU time's own child is measured:
/// the max RSS of a process spawned from this one starts at this one's.
bool runProcess(std::vector<std::string> const& words, long& peakKb)
{
    std::string const peakFile = sequence().file("peak.txt");
    std::vector<std::string> timed{"/usr/bin/time", "-f", "%M", "-o", peakFile};
    timed.insert(timed.end(), words.begin(), words.end());
    std::vector<char*> argv;
    for (std::string const& word : timed) {
        argv.push_back(const_cast<char*>(word.c_str()));
    }
    argv.push_back(nullptr);
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_addopen(&actions, 1, "/dev/null", O_WRONLY, 0);
    pid_t pid = 0;
    int const spawned = posix_spawn(&pid, argv[0], &actions, nullptr, argv.data(), environ);
    posix_spawn_file_actions_destroy(&actions);
    int status = 0;
    if (spawned != 0 || ::waitpid(pid, &status, 0) != pid) {
        return false;
    }
    std::ifstream(peakFile) >> peakKb;
    return WIFEXITED(status) && WEXITSTATUS(status) == 0;
}

void wholeSequence(benchmark::State& state, std::vector<std::string> (*command)(std::string const&))
{
    std::vector<std::string> const words = command("out");
    long peakKb = 0;
    for (auto _ : state) {
        if (!runProcess(words, peakKb)) {
            state.SkipWithError("the command failed");
            break;
        }
    }
    state.SetItemsProcessed(state.iterations() * kFrames);
    state.counters["peak_MB"] = static_cast<double>(peakKb) / 1024.0;
}

/// Both sides once, then every frame compared: the same pixels, exactly.
void samePixels(benchmark::State& state)
{
    long peakKb = 0;
    for (auto _ : state) {
        if (!runProcess(colorconfigCommand("ours"), peakKb) || !runProcess(oiiotoolCommand("theirs"), peakKb)) {
            state.SkipWithError("a command failed");
            return;
        }
    }
    for (int frame = kFirst; frame < kFirst + kFrames; ++frame) {
        std::string const number = std::to_string(frame);
        OIIO::ImageBuf const ours(sequence().file("ours." + number + ".exr"));
        OIIO::ImageBuf const theirs(sequence().file("theirs." + number + ".exr"));
        if (OIIO::ImageBufAlgo::compare(ours, theirs, 0.0f, 0.0f).nfail != 0) {
            state.SkipWithError(("frame " + number + " differs from oiiotool's").c_str());
            return;
        }
    }
}

BENCHMARK(samePixels)->Name("sequence2kHalf/samePixels")->Iterations(1)->Unit(benchmark::kSecond)->UseRealTime();
BENCHMARK_CAPTURE(wholeSequence, colorconfigConvert, colorconfigCommand)
    ->Name("sequence2kHalf/colorconfigConvert")
    ->Unit(benchmark::kSecond)
    ->UseRealTime();
BENCHMARK_CAPTURE(wholeSequence, oiiotoolFrames, oiiotoolCommand)
    ->Name("sequence2kHalf/oiiotoolFrames")
    ->Unit(benchmark::kSecond)
    ->UseRealTime();

} // namespace
} // namespace verra_bench
