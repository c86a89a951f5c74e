// Tests of verra_sdk/kit/frame_sequence.h.

#include "support/kit_env.h"

#include <verra_sdk/kit/frame_sequence.h>

namespace verra_test {
namespace {

using FrameSequence = KitTest;

TEST_F(FrameSequence, PatternsAndRangesReadAsOiiotoolReadsThem)
{
    std::pair<char const*, char const*> const patterns[] = {
        {"d#/p.#.exr", "d#/p.%04d.exr"}, {"p.##.exr", "p.%08d.exr"}, {"p.@@@.exr", "p.%03d.exr"},
        {"p.%05d.exr", "p.%05d.exr"},    {"p.%d.exr", "p.%d.exr"},   {"p.exr", ""},
    };
    for (auto const& [path, pattern] : patterns) {
        EXPECT_EQ(kit::sequencePattern(path), pattern) << path;
    }
    std::pair<char const*, std::vector<int>> const ranges[] = {
        {"1001-1004", {1001, 1002, 1003, 1004}},
        {"1001-1007x3", {1001, 1004, 1007}},
        {"1001,1005,1010-1011", {1001, 1005, 1010, 1011}},
        {"all", {}},
    };
    for (auto const& [text, frames] : ranges) {
        std::vector<int> parsed;
        std::string error;
        EXPECT_EQ(kit::parseFrames(text, parsed, error), !frames.empty()) << text;
        EXPECT_EQ(parsed, frames) << text;
    }
    EXPECT_EQ(kit::framesText({3, 4, 5, 9, 11, 12}), "3-5,9,11-12");
}

TEST_F(FrameSequence, PlansTheFramesAskedForOrFoundWithTheirGaps)
{
    for (char const* name : {"p.0998.exr", "p.1001.exr", "p.1002.exr", "p.01003.exr", "q.1001.exr"}) {
        m_env.dir().write(name, "");
    }
    kit::SequencePlan const found = kit::planSequence(file("p.#.exr"), file("o/p.%05d.png"), "");
    EXPECT_THAT(found.files,
                ElementsAre(Field(&kit::FramePair::output, file("o/p.00998.png")),
                            Field(&kit::FramePair::input, file("p.1001.exr")), Field(&kit::FramePair::frame, 1002)));
    EXPECT_THAT(found.missing, ElementsAre(AllOf(Field(&kit::SequenceGap::input, file("p.#.exr")),
                                                 Field(&kit::SequenceGap::frames, ElementsAre(999, 1000)))));
    kit::SequencePlan const asked = kit::planSequence(file("p.@@@@@.exr"), file("p.#.tif"), "1003,1000");
    EXPECT_THAT(asked.files, ElementsAre(Field(&kit::FramePair::input, file("p.01003.exr")),
                                         Field(&kit::FramePair::output, file("p.1000.tif"))));
    std::tuple<std::string, std::string, std::string, std::string> const refused[] = {
        {"p.#.exr", "o.exr", "", "'o.exr' needs a frame pattern (#, @ or %0Nd) as its input 'p.#.exr' has"},
        {"p.exr", "o.#.exr", "", "'o.#.exr' has a frame pattern and its input 'p.exr' has none"},
        {"p.exr", "o.exr", "1-2", "a frame range needs a frame pattern (#, @ or %0Nd) in 'p.exr'"},
        {"p.#.exr", "o.#.exr", "1-x",
         "malformed frame range '1-x' (examples: 1001-1100, 1001-1100x2, 1001,1005,1010-1020)"},
        {file("z.#.exr"), "o.#.exr", "", "no file matches '" + file("z.#.exr") + "'"},
    };
    for (auto const& [input, output, frames, error] : refused) {
        kit::SequencePlan const plan = kit::planSequences({{-1, input, output}}, frames);
        EXPECT_EQ(plan.error, error);
        EXPECT_TRUE(plan.files.empty()) << error;
    }
}

} // namespace
} // namespace verra_test
