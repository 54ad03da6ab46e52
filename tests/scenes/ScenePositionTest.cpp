#include "scenes/ScenePosition.h"
#include "scenes/IKxSceneDetect.h"

#include <gtest/gtest.h>

#include <limits>
#include <string>

namespace scenedetect {
namespace {

constexpr LONGLONG kPal = 400000;
constexpr LONGLONG kNtsc = 333667;
constexpr LONGLONG kNoFrameDuration = 1000000;
constexpr std::int32_t kMaxPosition = std::numeric_limits<std::int32_t>::max();

struct Case {
    const char* name;
    std::uint32_t method;
    SceneMoment moment; // frame number, start, duration, frame duration, frame offset, time offset
    std::int32_t position;
};

class ScenePositionTest : public testing::TestWithParam<Case> {};

TEST_P(ScenePositionTest, FollowsTheRule) {
    EXPECT_EQ(ScenePosition(GetParam().method, GetParam().moment), GetParam().position);
}

INSTANTIATE_TEST_SUITE_P(
    Cases, ScenePositionTest,
    testing::Values(
        Case{"OtherMethodsCountFrames", KxMethodInterval, {75, 9 * kPal, kPal, kPal, 5, 5 * kPal}, 75},
        Case{"UnknownMethodsCountFrames", 17, {75, 0, kPal, kPal, 0, 0}, 75},
        Case{"FirstFramesAreClamped", KxMethodVideo, {1, 0, 0, 0, 0, 0}, 0},
        Case{"CountedWithoutDuration", KxMethodVideo, {12, 99 * kPal, 0, kPal, 0, 0}, 10},
        Case{"NegativeDurationCounts", KxMethodVideo, {12, 99 * kPal, -1, kPal, 0, 0}, 10},
        Case{"FrameOffsetShiftsCounts", KxMethodVideo, {12, 0, 0, kPal, 5, 0}, 15},
        Case{"FrameOffsetLeavesTimesAlone", KxMethodVideo, {12, 12 * kPal, kPal, kPal, 5, 0}, 10},
        Case{"TimedWithDuration", KxMethodVideo, {99, 1200000, kPal, kPal, 0, 0}, 1},
        Case{"HalfAFrameRoundsUp", KxMethodVideo, {99, 5 * kPal + kPal / 2, kPal, kPal, 0, 0}, 4},
        Case{"LessRoundsDown", KxMethodVideo, {99, 5 * kPal + kPal / 2 - 1, kPal, kPal, 0, 0}, 3},
        Case{"TimeOffsetShiftsTimes", KxMethodVideo, {0, 10 * kPal, kPal, kPal, 0, 3 * kPal}, 11},
        Case{"SampleStandsInForTheType", KxMethodVideo, {0, 10 * kPal, kPal, kNoFrameDuration, 0, 0}, 8},
        Case{"SampleStandsInForZero", KxMethodVideo, {0, 10 * kPal, kPal, 0, 0, 0}, 8},
        Case{"HoursOfNtsc", KxMethodVideo, {0, 1000000 * kNtsc, kNtsc, kNtsc, 0, 0}, 999998},
        Case{"NegativeTimesAreClamped", KxMethodVideo, {0, -10 * kPal, kPal, kPal, 0, 0}, 0},
        Case{"TimesSaturate",
             KxMethodVideo,
             {0, std::numeric_limits<LONGLONG>::max(), 1, 1, 0, 1},
             kMaxPosition},
        Case{"CountsSaturate", KxMethodVideo, {kMaxPosition, 0, 0, 0, kMaxPosition, 0}, kMaxPosition}),
    [](const auto& tested) { return std::string(tested.param.name); });

} // namespace
} // namespace scenedetect
