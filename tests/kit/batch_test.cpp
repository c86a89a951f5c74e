// Tests of verra_sdk/kit/batch.h.

#include "support/kit_env.h"

#include <verra_sdk/kit/batch.h>
#include <verra_sdk/kit/image_operations.h>

#include <thread>

namespace verra_test {
namespace {

using State = kit::FrameState;
using Batch = KitTest;

std::vector<State> statesOf(kit::BatchSummary const& summary)
{
    std::vector<State> states;
    for (kit::BatchItem const& item : summary.items) {
        states.push_back(item.state);
    }
    return states;
}

TEST_F(Batch, FramesRunAtOnceGiveTheBytesOfOneJobAfterAnotherAndFailAlone)
{
    for (std::string const frame : {"1", "2", "4", "5"}) {
        writeNoise(file("in." + frame + ".exr"), 24, 4, OIIO::TypeDesc::HALF);
    }
    std::string const whole = readFile(file("in.4.exr"));
    m_env.dir().write("in.3.exr", whole.substr(0, whole.size() / 2));
    m_env.dir().write("out.1.exr.colorconfig-0123abcd.tmp", "");
    std::string const other = m_env.dir().write("out.1.exr.colorconfig-0123abcd.tmp.keep", "");
    kit::BatchRequest const request{kit::planSequence(file("in.@.exr"), file("out.@.exr"), "1-5").files,
                                    "linear",
                                    kit::conversionMaker("sRGB"),
                                    {}};
    std::vector<std::size_t> done;
    kit::BatchOptions options{2, 0, false, [&done, caller = std::this_thread::get_id()](kit::BatchProgress const& p) {
                                  EXPECT_EQ(std::this_thread::get_id(), caller);
                                  done.push_back(p.done);
                              }};
    kit::BatchSummary const summary = kit::runBatch(request, options);
    EXPECT_THAT(done, ElementsAre(1, 2, 3, 4, 5));
    EXPECT_EQ(summary.removedTemporaries, 1u); // the ".tmp" file, not the other
    EXPECT_TRUE(std::filesystem::exists(other));
    EXPECT_THAT(statesOf(summary),
                ElementsAre(State::Converted, State::Converted, State::Failed, State::Converted, State::Converted));
    EXPECT_THAT(summary.items[2].reason, HasSubstr("cannot read '" + file("in.3.exr")));
    kit::FileLedger ledger;
    for (std::string const frame : {"1", "2", "4", "5"}) {
        kit::ImageOperation const alone = kit::conversionOperation("linear", "sRGB");
        ASSERT_TRUE(kit::runFileJob({file("in." + frame + ".exr"), file("alone.exr"), {}, false, alone}, ledger).ok());
        EXPECT_EQ(readFile(file("out." + frame + ".exr")), readFile(file("alone.exr"))) << frame;
        ledger.written.clear();
    }
    // Again with update: what was written is skipped; a newer input, a missing output and the failed frame run.
    std::filesystem::last_write_time(file("in.2.exr"),
                                     std::filesystem::file_time_type::clock::now() + std::chrono::hours(1));
    std::filesystem::remove(file("out.4.exr"));
    options.update = true;
    EXPECT_THAT(statesOf(kit::runBatch(request, options)),
                ElementsAre(State::Skipped, State::Converted, State::Failed, State::Converted, State::Skipped));
}

TEST_F(Batch, AutoTakesTheSpaceTheFileRecordsWhenTheConfigKnowsIt)
{
    ASSERT_THAT(load(sampleConfig()).errors, ::testing::IsEmpty());
    std::pair<char const*, char const*> const tags[] = {
        {"tagged.png", "srgb_texture"}, {"unknown.png", "nope"}, {"plain.tif", ""}, {"plain.exr", ""}};
    kit::BatchRequest request{{}, "auto", kit::conversionMaker("lin"), {}};
    for (auto const& [name, tag] : tags) {
        OIIO::ImageBuf image(OIIO::ImageSpec(4, 4, 3, OIIO::TypeDesc::UINT8));
        image.specmod().attribute("oiio:ColorSpace", tag);
        ASSERT_TRUE(image.write(file(name)));
        request.files.push_back({-1, file(name), file(std::string("out_") + name)});
    }
    std::vector<std::pair<std::string, std::string>> found;
    for (kit::BatchItem const& item : kit::runBatch(request, {}).items) {
        found.emplace_back(item.from, item.fromSource);
    }
    EXPECT_THAT(found, ElementsAre(std::make_pair("srgb_tex", "oiio:ColorSpace"), std::make_pair("sRGB", "extension"),
                                   std::make_pair("linear", "extension"), std::make_pair("linear", "extension")));
}

} // namespace
} // namespace verra_test
