#include "scenes/ScenePosition.h"

#include "scenes/IKxSceneDetect.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace scenedetect {

namespace {

constexpr std::int32_t kVideoLookAhead = 2;

// What a media type without a frame duration answers, and so one that is not believed.
constexpr LONGLONG kDefaultFrameDuration = 1000000;

double FramesSinceStart(const SceneMoment& moment) {
    const bool typeKnows = moment.frameDuration != 0 && moment.frameDuration != kDefaultFrameDuration;
    const LONGLONG frame = typeKnows ? moment.frameDuration : moment.duration;
    // Each term becomes a double on its own: a sum of 64-bit extremes must not overflow.
    const double time = static_cast<double>(moment.start) + static_cast<double>(moment.timeOffset);
    return std::trunc(time / static_cast<double>(frame) + 0.5);
}

} // namespace

std::int32_t ScenePosition(std::uint32_t method, const SceneMoment& moment) {
    if (method != KxMethodVideo)
        return moment.frameNumber;
    // Doubles hold every sum of 32-bit counts exactly.
    const double frames = moment.duration > 0 ? FramesSinceStart(moment)
                                              : static_cast<double>(moment.frameNumber) + moment.frameOffset;
    // Deliberate: the half frame is rounded in for sample times only, the two frames come off for both.
    constexpr double kLast = std::numeric_limits<std::int32_t>::max();
    return static_cast<std::int32_t>(std::clamp(frames - kVideoLookAhead, 0.0, kLast));
}

bool AddsVideoScene(std::int32_t frameNumber, const Judgement& judgement) {
    // The scene that the engine reports for frame 0 is there already.
    return frameNumber == 0 || judgement.sceneStart >= 1;
}

} // namespace scenedetect
