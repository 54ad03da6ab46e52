// From the times of a file to what is printed: seconds and timecode.
#pragma once

extern "C" {
#include <libavutil/rational.h>
}

#include <cstdint>
#include <string>

namespace scenedetect {

/// The unit of the file's times, and its frame rate (the nominal one when the rate is variable).
struct TimeScale {
    AVRational unit{1, 25};
    AVRational rate{25, 1};
};

/// AvgTimePerFrame of a rate: 100 ns, rounded to the nearest, at least 1.
[[nodiscard]] std::int64_t FrameDurationOf(AVRational rate);

/// HH:MM:SS:FF of the frame at `time`, or HH:MM:SS;FF at 29.97 and 59.94 frames per second, where two (four)
/// numbers are left out each minute but every tenth. Hours are not reduced modulo 24.
[[nodiscard]] std::string TimecodeText(std::int64_t time, const TimeScale& scale);

/// Seconds with three decimals, rounded to the nearest.
[[nodiscard]] std::string SecondsText(std::int64_t time, const TimeScale& scale);

} // namespace scenedetect
