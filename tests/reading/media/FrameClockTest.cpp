#include "reading/media/FrameClock.h"
#include "reading/ffmpeg/Stamps.h"
#include "tests/Testing.h"

extern "C" {
#include <libavutil/avutil.h>
#include <libavutil/mathematics.h>
}

namespace {

constexpr std::int64_t kNone = AV_NOPTS_VALUE;

struct ClockCase {
    const char* name;
    FrameClock::Setup setup;
    std::vector<std::int64_t> stamps;
    std::vector<std::int64_t> frames;
    std::vector<std::int64_t> milliseconds;
};

FrameClock::Setup Frames(AVRational rate, std::optional<std::int64_t> origin = std::nullopt) {
    return {av_inv_q(rate), rate, true, false, origin};
}
FrameClock::Setup Milliseconds(AVRational rate, bool constant) {
    return {{1, 1000}, rate, constant, false, std::nullopt};
}

class FrameClockTest : public TestWithParam<ClockCase> {};

TEST_P(FrameClockTest, NumbersPictures) {
    const ClockCase& each = GetParam();
    FrameClock clock(each.setup);
    std::vector<std::int64_t> frames;
    std::vector<std::int64_t> milliseconds;
    for (const std::int64_t stamp : each.stamps) {
        const FilePlace reading = clock.Next(stamp, -1);
        frames.push_back(reading.frame);
        milliseconds.push_back(Rescale(reading.time, clock.Scale().unit, {1, 1000}));
    }
    EXPECT_EQ(frames, each.frames);
    EXPECT_EQ(milliseconds, each.milliseconds);
}

const ClockCase kCases[] = {
    {"Even", Frames({25, 1}), {0, 1, 2}, {0, 1, 2}, {0, 40, 80}},
    {"DroppedFramesLeaveAGap", Frames({25, 1}), {0, 1, 4, 5}, {0, 1, 4, 5}, {0, 40, 160, 200}},
    {"FirstPictureIsFrameZero", Frames({25, 1}), {7, 8, 10}, {0, 1, 3}, {0, 40, 120}},
    {"AnOriginCountsWhatIsMissingAtTheStart", Frames({25, 1}, 0), {2, 3}, {2, 3}, {80, 120}},
    {"NoStamps", Frames({25, 1}), {kNone, kNone, kNone}, {0, 1, 2}, {0, 40, 80}},
    {"RoundedStamps",
     Milliseconds({30000, 1001}, true),
     {0, 33, 67, 100, 133, 200},
     {0, 1, 2, 3, 4, 6},
     {0, 33, 67, 100, 133, 200}},
    {"VariableRate",
     Milliseconds({25, 1}, false),
     {0, 40, 80, 180, 280, 290},
     {0, 1, 2, 3, 4, 5},
     {0, 40, 80, 180, 280, 290}},
    {"DeclaredConstantButIsNot",
     Milliseconds({10, 1}, true),
     {0, 100, 140, 180, 500},
     {0, 1, 2, 3, 4},
     {0, 100, 140, 180, 500}},
    {"StampsGoBack",
     Milliseconds({25, 1}, false),
     {0, 40, 80, 40, 160},
     {0, 1, 2, 3, 4},
     {0, 40, 80, 80, 160}},
    {"WildStampsAreNone",
     Frames({25, 1}),
     {0, 1, INT64_MAX, 3, INT64_MIN + 1, 5},
     {0, 1, 2, 3, 4, 5},
     {0, 40, 80, 120, 160, 200}},
    {"TimesThatWouldRunOver",
     Frames({25, 1}),
     {0, kFarthestStamp, -kFarthestStamp, 3, INT64_MAX - 1},
     {0, 1, 2, 3, 4},
     {0, 40, 80, 120, 160}},
    // 2^56 microseconds, from where on times count ticks.
    {"TheLastTimes",
     {{1, 1'000'000}, {25, 1}, true, false, std::nullopt},
     {0, kFarthestStamp, kFarthestStamp + 1, kNone},
     {0, 1, 2, 3},
     {0, 72'057'594'037'928, 72'057'594'037'928, 72'057'594'037'928}},
    {"JoinedStreams",
     {{1, 25}, {25, 1}, true, true, std::nullopt},
     {100, 101, 102, 20, 21, 900'000, 900'001},
     {0, 1, 2, 3, 4, 5, 6},
     {0, 40, 80, 120, 160, 200, 240}},
};

INSTANTIATE_TEST_SUITE_P(Cases, FrameClockTest, ValuesIn(kCases), kByName);

} // namespace
