// Times of day on a tape as frame numbers, and the correction for drop-frame timecode.
#pragma once

#include <cstdint>

namespace scenedetect {

/// The frame number of a time of day at a whole frame rate.
[[nodiscard]] constexpr std::int32_t TimeToFrames(int hours, int minutes, int seconds, int frames,
                                                  std::int32_t framesPerSecond) {
    return ((hours * 60 + minutes) * 60 + seconds) * framesPerSecond + frames;
}

/// The count of real frames of a timecode that leaves out `dropped` numbers each minute but every tenth.
[[nodiscard]] constexpr std::int64_t WithoutDropped(std::int64_t number, std::int64_t framesPerSecond,
                                                    std::int64_t dropped) {
    return number - dropped * (number / (60 * framesPerSecond) - number / (600 * framesPerSecond));
}

/// Turns a timecode frame number into a count of real frames: at 30 frames per second two numbers are
/// skipped each minute but every tenth. Other rates drop none.
[[nodiscard]] constexpr std::int32_t CorrectDropFrame(std::int32_t number, std::int32_t framesPerSecond) {
    return framesPerSecond == 30 ? static_cast<std::int32_t>(WithoutDropped(number, 30, 2)) : number;
}

/// Whether two recording times lie more than a second apart, in either direction.
[[nodiscard]] constexpr bool IsRecordingBreak(std::int32_t previous, std::int32_t current,
                                              std::int32_t framesPerSecond) {
    const std::int32_t jump = previous < current ? current - previous : previous - current;
    return jump > framesPerSecond;
}

} // namespace scenedetect
