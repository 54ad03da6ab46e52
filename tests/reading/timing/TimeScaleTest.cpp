#include "reading/timing/TimeScale.h"
#include "reading/timing/FrameNumbering.h"
#include "tests/Testing.h"
#include "tests/reading/timing/Rates.h"

namespace {

// Counted by the rules, second by second; the first numbers of each and its last one are asked for.
TEST(FrameNumbering, GoesThroughADayAndBack) {
    for (const Ratio rate : {kPal, kNtsc, kDoubleNtsc}) {
        const FrameNumbering numbering = NumberingOf(rate);
        std::int64_t first = 0; // the frame that would be 0 of this second
        for (int second = 0; second < 24 * 3600; ++second) {
            const int leftOut = second % 60 == 0 && second % 600 != 0 ? numbering.dropped : 0;
            first -= leftOut;
            for (const int number : {0, 1, 2, 3, 4, numbering.framesPerSecond - 1}) {
                const TimecodeFields fields{second / 3600, second / 60 % 60, second % 60, number};
                const auto frame = FrameOfTimecode(fields, numbering);
                if (frame != (number < leftOut ? std::nullopt : std::optional(first + number)))
                    FAIL() << second << ' ' << number;
                if (!frame || second % 30 != 0)
                    continue; // text takes its time
                char text[32];
                std::snprintf(text, sizeof text, "%02d:%02d:%02d%c%02d", second / 3600, second / 60 % 60,
                              second % 60, numbering.dropped != 0 ? ';' : ':', number);
                ASSERT_EQ(FrameTimecode(*frame, numbering), text);
            }
            first += numbering.framesPerSecond;
        }
        EXPECT_EQ(first, numbering.FramesPerDay());
    }
}

TEST(TimeScale, LargeNumbersAreExactOrTheLargest) {
    constexpr std::int64_t kMost = std::numeric_limits<std::int64_t>::max();
    constexpr std::int32_t kTerm = std::numeric_limits<std::int32_t>::max();
    EXPECT_EQ(Rescale(kMost, {1, 1}, {1, 1}), kMost);
    EXPECT_EQ(Rescale(kMost, {1, 25}, {1, 1'000'000'000}), kMost);
    EXPECT_EQ(Rescale(kMost - 1, {1, 2}, {1, 1}), kMost / 2); // 2^62 - 1
    // (2^62 - 1) * 5 / 7, of which only the product has more than 64 bits.
    EXPECT_EQ(Rescale(kMost / 2, {5, 7}, {1, 1}), 3'294'061'441'733'848'502);
    // By (2^31 - 1)^2 / (2^31 - 2)^2, which has terms of 62 bits: 1 + 2^-30 + 3 * 2^-62 + ...
    EXPECT_EQ(Rescale(std::int64_t{1} << 60, {kTerm, kTerm - 1}, {kTerm - 1, kTerm}),
              (std::int64_t{1} << 60) + (std::int64_t{1} << 30) + 1);
}

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
        {kNtsc, 2, "00:00:00;02", "0.067"},
        {kNtsc, 1800, "00:01:00;02", "60.060"},
        {kNtsc, 17'982, "00:10:00;00", "599.999"},
        {kNtsc, 107'892, "01:00:00;00", "3599.996"},
        {{2997, 100}, 1800, "00:01:00;02", "60.060"},
        {kDoubleNtsc, 3600, "00:01:00;04", "60.060"},
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

TEST(TimeScale, RatesOfFrameDurations) {
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
