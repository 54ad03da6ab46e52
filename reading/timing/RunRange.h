// The part of a file that a run is about.
#pragma once

#include "reading/timing/TimePoint.h"

#include <optional>

namespace scenedetect {

/// As the command line has it; at most one of `end` and `duration`.
struct RangeChoice {
    std::optional<TimePoint> start;
    std::optional<TimePoint> end;
    std::optional<TimePoint> duration;
};

/// Asked for place after place, in order.
class RunRange {
  public:
    /// HostError when a timecode does not go with the file's rate.
    RunRange(const RangeChoice& choice, const TimeScale& scale);

    [[nodiscard]] bool HasBegun(const FilePlace& place);
    /// Whether it would begin with this place or has begun before it.
    [[nodiscard]] bool Begins(const FilePlace& place) const {
        return m_hasBegun || !m_start || m_start->IsReachedBy(place);
    }
    /// Whether this place and all that follow lie after the range.
    [[nodiscard]] bool IsOver(const FilePlace& place);
    [[nodiscard]] bool HasEnded() const { return m_hasEnded; }

  private:
    const TimeScale m_scale;
    const std::optional<TimePoint> m_duration;
    std::optional<TimePosition> m_start;
    std::optional<TimePosition> m_end;
    bool m_hasBegun = false;
    bool m_hasEnded = false;
};

} // namespace scenedetect
