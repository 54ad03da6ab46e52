#include "reading/timing/TimeScale.h"
#include "tests/reading/timing/Rates.h"

#include <gtest/gtest.h>

namespace scenedetect {
namespace {

using namespace testing_support;

TEST(TimeScale, TimecodeAndSecondsOfFrames) {
    const struct {
        Ratio rate;
        std::int64_t frame;
        const char* timecode;
        const char* seconds;
    } cases[] = {
        {kPal, 0, "00:00:00:00", "0.000"},
        {kPal, 24, "00:00:00:24", "0.960"},
        {kPal, 90'000, "01:00:00:00", "3600.000"},
        {kPal, 9'000'000, "100:00:00:00", "360000.000"},
        // Two numbers are left out at each minute but every tenth.
        {kNtsc, 1, "00:00:00;01", "0.033"},
        {kNtsc, 2, "00:00:00;02", "0.067"},
        {kNtsc, 1799, "00:00:59;29", "60.027"},
        {kNtsc, 1800, "00:01:00;02", "60.060"},
        {kNtsc, 3597, "00:01:59;29", "120.020"},
        {kNtsc, 3598, "00:02:00;02", "120.053"},
        {kNtsc, 17'981, "00:09:59;29", "599.966"},
        {kNtsc, 17'982, "00:10:00;00", "599.999"},
        {kNtsc, 107'892, "01:00:00;00", "3599.996"},
        {{2997, 100}, 1800, "00:01:00;02", "60.060"},
        {kDoubleNtsc, 3600, "00:01:00;04", "60.060"},
        {kDoubleNtsc, 35'964, "00:10:00;00", "599.999"},
        {{30, 1}, 1800, "00:01:00:00", "60.000"},
        {{24000, 1001}, 24, "00:00:01:00", "1.001"},
        {{1, 2}, 3, "00:00:03:00", "6.000"},
    };
    for (const auto& each : cases) {
        const TimeScale scale{each.rate.Inverse(), each.rate};
        EXPECT_EQ(TimecodeText(each.frame, scale), each.timecode);
        EXPECT_EQ(SecondsText(each.frame, scale), each.seconds) << each.timecode;
    }
}

TEST(TimeScale, TimesBetweenFramesGoToTheNearest) {
    const TimeScale scale{{1, 1000}, {25, 1}};
    EXPECT_EQ(TimecodeText(1019, scale), "00:00:01:00");
    EXPECT_EQ(TimecodeText(1021, scale), "00:00:01:01");
    EXPECT_EQ(SecondsText(1021, scale), "1.021");
}

TEST(TimeScale, FrameDurations) {
    EXPECT_EQ(FrameDurationOf({25, 1}), 400'000);
    EXPECT_EQ(FrameDurationOf({30000, 1001}), 333'667);
    EXPECT_EQ(FrameDurationOf({24000, 1001}), 417'083);
    EXPECT_EQ(FrameDurationOf({100'000'000, 1}), 1);
}

TEST(TimeScale, RatesBehindFrameDurations) {
    const struct {
        std::int64_t duration;
        Ratio rate;
    } cases[] = {
        {400'000, {25, 1}},
        {333'667, {30000, 1001}},
        {333'666, {30000, 1001}},
        {333'333, {30, 1}},
        {417'083, {24000, 1001}},
        {166'833, {60000, 1001}},
        {10'000'000, {1, 1}},
        {1'234'567, {10'000'000, 1'234'567}},
        {70'000'000, {10'000'000, 70'000'000}},
        {0, {25, 1}},
        {-1, {25, 1}},
    };
    for (const auto& each : cases)
        EXPECT_EQ(RateOfFrameDuration(each.duration), each.rate) << each.duration;
}

} // namespace
} // namespace scenedetect
