// Times of day on a tape as frame numbers, and the correction for drop-frame timecode.
#pragma once

#include <cstdint>

namespace scenedetect {

/// The frame number of a time of day at a whole frame rate.
[[nodiscard]] constexpr std::int32_t TimeToFrames(int hours, int minutes, int seconds, int frames,
                                                  std::int32_t framesPerSecond) {
    return ((hours * 60 + minutes) * 60 + seconds) * framesPerSecond + frames;
}

/// Turns a timecode frame number into a count of real frames: at 30 frames per second two numbers are
/// skipped each minute but every tenth. Other rates drop none.
[[nodiscard]] constexpr std::int32_t CorrectDropFrame(std::int32_t number, std::int32_t framesPerSecond) {
    constexpr std::int32_t kMinute = 1800;
    constexpr std::int32_t kTenMinutes = 18000;
    return framesPerSecond == 30 ? number - 2 * (number / kMinute - number / kTenMinutes) : number;
}

/// Whether two recording times lie more than a second apart, in either direction.
[[nodiscard]] constexpr bool IsRecordingBreak(std::int32_t previous, std::int32_t current,
                                              std::int32_t framesPerSecond) {
    const std::int32_t jump = previous < current ? current - previous : previous - current;
    return jump > framesPerSecond;
}

} // namespace scenedetect
