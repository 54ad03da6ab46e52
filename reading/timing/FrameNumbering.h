// How timecode numbers the frames of a rate: from a count of frames to its number, and back.
#pragma once

#include "reading/timing/TimeScale.h"

#include <cstdint>
#include <optional>
#include <string>

namespace scenedetect {

struct FrameNumbering {
    std::int32_t framesPerSecond = 25; ///< numbers that a second has; at least 1
    std::int32_t dropped = 0;          ///< that each minute but every tenth leaves out; 0 without drop-frame

    [[nodiscard]] bool IsDropFrame() const { return dropped != 0; }
    /// Frames of 24 hours of timecode, after which it starts again.
    [[nodiscard]] std::int64_t FramesPerDay() const;
};

struct TimecodeFields {
    std::int64_t hours = 0;
    int minutes = 0;
    int seconds = 0;
    int frames = 0;
};

/// The whole rate nearest to this one; with drop-frame at 29.97 and 59.94 frames per second.
[[nodiscard]] FrameNumbering NumberingOf(Ratio rate);

/// HH:MM:SS:FF, or HH:MM:SS;FF with drop-frame, of a timecode's number: without gaps where frame numbers are
/// dropped. Hours are not reduced modulo 24.
[[nodiscard]] std::string NumberTimecode(std::int64_t number, const FrameNumbering& numbering);
/// The same of a count of frames from 00:00:00:00 on.
[[nodiscard]] std::string FrameTimecode(std::int64_t frame, const FrameNumbering& numbering);

/// The count of frames before the one with this number; nothing for one that is left out or more than a
/// second has.
[[nodiscard]] std::optional<std::int64_t> FrameOfTimecode(const TimecodeFields& fields,
                                                          const FrameNumbering& numbering);

} // namespace scenedetect
