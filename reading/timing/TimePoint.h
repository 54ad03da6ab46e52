// Points in a file as users write them: frames, seconds, clock times and timecode.
#pragma once

#include "reading/timing/FrameNumbering.h"
#include "reading/timing/SampleTable.h"
#include "reading/timing/TimeScale.h"

#include <cstdint>
#include <optional>
#include <string>
#include <variant>

namespace scenedetect {

/// `75`: a frame of the file, from 0.
struct FramePoint {
    std::int64_t frame = 0;
};

/// `2.5s` or `HH:MM:SS.nnn`: a time since the first frame, to the nanosecond.
struct ClockPoint {
    std::int64_t nanoseconds = 0;
};

/// `HH:MM:SS:FF` or, with drop-frame, `HH:MM:SS;FF`: counted from 00:00:00:00 at the first frame.
struct TimecodePoint {
    TimecodeFields fields;
    bool isDropFrame = false;
};

struct TimePoint {
    std::variant<FramePoint, ClockPoint, TimecodePoint> point;
    std::string text; ///< as it was written
};

/// Reads one of the four forms; what depends on the rate is left to Resolve. HostError with what there is to
/// write.
[[nodiscard]] TimePoint ParseTimePoint(const std::string& text);
/// The same as a check: what is wrong, or empty text. A validator as CLI11 takes it.
[[nodiscard]] std::string TimePointFault(const std::string& text);

/// Where a point lies among the frames of a file.
struct TimePosition {
    std::optional<std::int64_t> frame; ///< where the point names one; else the time counts
    std::int64_t time = 0;             ///< in units of the scale

    /// Of places that go forward the first that is is the frame at the point.
    [[nodiscard]] bool IsReachedBy(const FilePlace& place) const {
        return frame ? place.frame >= *frame : place.time >= time;
    }
};

/// The frame that is nearest to a time: the first that is no more than half a frame (of the nominal rate)
/// earlier, so that times that were printed with three decimals find their frames again.
[[nodiscard]] TimePosition NearestTo(std::int64_t time, const TimeScale& scale);

/// The frames of this rate that timecode counts from 00:00:00:00 on; `text` is for messages. HostError as
/// Resolve's.
[[nodiscard]] std::int64_t FrameOf(const TimecodePoint& timecode, const std::string& text, Ratio rate);

/// A point of the file or, with `from`, so much after that place. Times mean the nearest frame. HostError
/// when timecode doesn't go with the rate: a frame that a second doesn't have, a number that drop-frame
/// leaves out, drop-frame at a rate without it.
[[nodiscard]] TimePosition Resolve(const TimePoint& point, const TimeScale& scale,
                                   const FilePlace& from = {});

} // namespace scenedetect
