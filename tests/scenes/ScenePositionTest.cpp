#include "scenes/ScenePosition.h"
#include "scenes/IKxSceneDetect.h"
#include "tests/Testing.h"

namespace {

constexpr LONGLONG kPalFrame = 400000;
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

INSTANTIATE_TEST_SUITE_P(
    Cases, ScenePositionTest,
    Values(Case{"OtherMethodsCountFrames",
                KxMethodInterval,
                {75, 9 * kPalFrame, kPalFrame, kPalFrame, 5, 5 * kPalFrame},
                75},
           Case{"UnknownMethodsCountFrames", 17, {75, 0, kPalFrame, kPalFrame, 0, 0}, 75},
           Case{"FirstFramesAreClamped", KxMethodVideo, {1, 0, 0, 0, 0, 0}, 0},
           Case{"CountedWithoutDuration", KxMethodVideo, {12, 99 * kPalFrame, 0, kPalFrame, 0, 0}, 10},
           Case{"NegativeDurationCounts", KxMethodVideo, {12, 99 * kPalFrame, -1, kPalFrame, 0, 0}, 10},
           Case{"FrameOffsetShiftsCounts", KxMethodVideo, {12, 0, 0, kPalFrame, 5, 0}, 15},
           Case{"FrameOffsetLeavesTimesAlone",
                KxMethodVideo,
                {12, 12 * kPalFrame, kPalFrame, kPalFrame, 5, 0},
                10},
           Case{"TimedWithDuration", KxMethodVideo, {99, 1200000, kPalFrame, kPalFrame, 0, 0}, 1},
           Case{"HalfAFrameRoundsUp",
                KxMethodVideo,
                {99, 5 * kPalFrame + kPalFrame / 2, kPalFrame, kPalFrame, 0, 0},
                4},
           Case{"LessRoundsDown",
                KxMethodVideo,
                {99, 5 * kPalFrame + kPalFrame / 2 - 1, kPalFrame, kPalFrame, 0, 0},
                3},
           Case{"TimeOffsetShiftsTimes",
                KxMethodVideo,
                {0, 10 * kPalFrame, kPalFrame, kPalFrame, 0, 3 * kPalFrame},
                11},
           Case{"SampleStandsInForTheType",
                KxMethodVideo,
                {0, 10 * kPalFrame, kPalFrame, kNoFrameDuration, 0, 0},
                8},
           Case{"SampleStandsInForZero", KxMethodVideo, {0, 10 * kPalFrame, kPalFrame, 0, 0, 0}, 8},
           Case{"HoursOfNtsc", KxMethodVideo, {0, 1000000 * kNtsc, kNtsc, kNtsc, 0, 0}, 999998},
           Case{
               "NegativeTimesAreClamped", KxMethodVideo, {0, -10 * kPalFrame, kPalFrame, kPalFrame, 0, 0}, 0},
           Case{"TimesSaturate",
                KxMethodVideo,
                {0, std::numeric_limits<LONGLONG>::max(), 1, 1, 0, 1},
                kMaxPosition},
           Case{"CountsSaturate", KxMethodVideo, {kMaxPosition, 0, 0, 0, kMaxPosition, 0}, kMaxPosition}),
    [](const auto& tested) { return std::string(tested.param.name); });

} // namespace
