#include <orv/log.h>

#include "support/log_capture.h"

#include <gtest/gtest.h>

#include <stdexcept>
#include <string>
#include <vector>

namespace {

using Lines = std::vector<std::string>;

/// Reinstalls the sink that was in place when the guard was made.
struct SinkGuard {
    orv::ErrorSink saved;
    ~SinkGuard() { orv::setErrorSink(saved); }
};

TEST(Log, DefaultWritesOneErrorLineToStandardError)
{
    testing::internal::CaptureStderr();
    orv::logError("Cannot convert from '%s' to '%s'.", "linear", "sRGB");
    orv::logError("with line end\n");
    EXPECT_EQ(testing::internal::GetCapturedStderr(),
              "error: Cannot convert from 'linear' to 'sRGB'.\nerror: with line end\n");
}

TEST(Log, SinkReceivesFormattedLinesWithoutOneLineEnd)
{
    verra_test::LogCapture const capture;
    orv::logError("OIIO failed to reset OCIO: %s", "bad file");
    orv::logError("two\n\n");
    orv::logError("%s", "");
    EXPECT_EQ(capture.lines(), (Lines{"OIIO failed to reset OCIO: bad file", "two\n", ""}));
}

TEST(Log, LongLinesArriveIntact)
{
    verra_test::LogCapture const capture;
    std::string const detail(10000, 'q');
    orv::logError("Conversion from '%s' to '%s' failed: %s", "a", "b", detail.c_str());
    ASSERT_EQ(capture.lines().size(), 1u);
    EXPECT_EQ(capture.lines()[0], "Conversion from 'a' to 'b' failed: " + detail);
}

TEST(Log, SetErrorSinkReturnsThePreviousSink)
{
    Lines first;
    Lines second;
    SinkGuard const guard{orv::setErrorSink([&first](char const* line) { first.emplace_back(line); })};
    orv::ErrorSink const previous = orv::setErrorSink([&second](char const* line) { second.emplace_back(line); });
    orv::logError("to second");
    ASSERT_TRUE(previous);
    previous("through the returned sink");
    EXPECT_EQ(first, (Lines{"through the returned sink"}));
    EXPECT_EQ(second, (Lines{"to second"}));

    // An empty sink restores standard error.
    orv::setErrorSink(orv::ErrorSink());
    testing::internal::CaptureStderr();
    orv::logError("back to stderr");
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "error: back to stderr\n");
}

TEST(Log, ThrowingSinkDoesNotEscape)
{
    SinkGuard const guard{orv::setErrorSink([](char const*) { throw std::runtime_error("sink failed"); })};
    EXPECT_NO_THROW(orv::logError("ignored %d", 1));
}

} // namespace
