#include "scenes/ScenePosition.h"
#include "scenes/IKxSceneDetect.h"
#include "tests/Testing.h"

namespace {

constexpr LONGLONG kFrame = 400000;
constexpr std::uint32_t kVideo = KxMethodVideo;
constexpr LONGLONG kMaxTime = std::numeric_limits<LONGLONG>::max();
constexpr LONGLONG kNtsc = 333667;
constexpr LONGLONG kNoFrameDuration = 1000000;
constexpr std::int32_t kMaxPosition = std::numeric_limits<std::int32_t>::max();

struct Case {
    const char* name;
    std::uint32_t method;
    SceneMoment moment; // frame number, start, duration, frame duration, frame offset, time offset
    std::int32_t position;
};

class ScenePositionTest : public TestWithParam<Case> {};

TEST_P(ScenePositionTest, FollowsTheRule) {
    EXPECT_EQ(ScenePosition(GetParam().method, GetParam().moment), GetParam().position);
}

const Case kCases[] = {
    {"OtherMethodsCountFrames", KxMethodInterval, {75, 9 * kFrame, kFrame, kFrame, 5, 5 * kFrame}, 75},
    {"UnknownMethodsCountFrames", 17, {75, 0, kFrame, kFrame, 0, 0}, 75},
    {"FirstFramesAreClamped", kVideo, {1, 0, 0, 0, 0, 0}, 0},
    {"CountedWithoutDuration", kVideo, {12, 99 * kFrame, 0, kFrame, 0, 0}, 10},
    {"NegativeDurationCounts", kVideo, {12, 99 * kFrame, -1, kFrame, 0, 0}, 10},
    {"FrameOffsetShiftsCounts", kVideo, {12, 0, 0, kFrame, 5, 0}, 15},
    {"FrameOffsetLeavesTimesAlone", kVideo, {12, 12 * kFrame, kFrame, kFrame, 5, 0}, 10},
    {"TimedWithDuration", kVideo, {99, 1200000, kFrame, kFrame, 0, 0}, 1},
    {"HalfAFrameRoundsUp", kVideo, {99, 5 * kFrame + kFrame / 2, kFrame, kFrame, 0, 0}, 4},
    {"LessRoundsDown", kVideo, {99, 5 * kFrame + kFrame / 2 - 1, kFrame, kFrame, 0, 0}, 3},
    {"TimeOffsetShiftsTimes", kVideo, {0, 10 * kFrame, kFrame, kFrame, 0, 3 * kFrame}, 11},
    {"SampleStandsInForTheType", kVideo, {0, 10 * kFrame, kFrame, kNoFrameDuration, 0, 0}, 8},
    {"SampleStandsInForZero", kVideo, {0, 10 * kFrame, kFrame, 0, 0, 0}, 8},
    {"HoursOfNtsc", kVideo, {0, 1000000 * kNtsc, kNtsc, kNtsc, 0, 0}, 999998},
    {"NegativeTimesAreClamped", kVideo, {0, -10 * kFrame, kFrame, kFrame, 0, 0}, 0},
    {"TimesSaturate", kVideo, {0, kMaxTime, 1, 1, 0, 1}, kMaxPosition},
    {"CountsSaturate", kVideo, {kMaxPosition, 0, 0, 0, kMaxPosition, 0}, kMaxPosition}};

INSTANTIATE_TEST_SUITE_P(Cases, ScenePositionTest, ValuesIn(kCases), kByName);

} // namespace
