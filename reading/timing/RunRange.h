// The part of a file that a run is about.
#pragma once

#include "reading/timing/FilmPart.h"
#include "reading/timing/TimePoint.h"

#include <optional>

namespace scenedetect {

/// As the command line has it; at most one of `end` and `duration`, and nothing beside a part.
struct RangeChoice {
    std::optional<TimePoint> start;
    std::optional<TimePoint> end;
    std::optional<TimePoint> duration;
    PartChoice part{};

    [[nodiscard]] bool HasPoints() const { return start || end || duration; }
};

/// Asked for place after place, in order.
class RunRange {
  public:
    /// HostError when a timecode does not go with the file's rate.
    /// `part`, if there is one, must outlive it.
    RunRange(const RangeChoice& choice, const TimeScale& scale, const FilmPart* part = nullptr);

    [[nodiscard]] bool HasBegun(const FilePlace& place);
    /// Whether it would begin with this place or has begun before it.
    [[nodiscard]] bool Begins(const FilePlace& place) const;
    /// Whether this place and all that follow lie after the range.
    [[nodiscard]] bool IsOver(const FilePlace& place);
    /// This place was one of the range.
    void Pass(const FilePlace& place) { m_isPartOver = m_part && m_part->IsLast(place); }
    [[nodiscard]] bool HasEnded() const { return m_hasEnded; }

  private:
    const TimeScale m_scale;
    const std::optional<TimePoint> m_duration;
    const FilmPart* const m_part;
    std::optional<TimePosition> m_start;
    std::optional<TimePosition> m_end;
    bool m_hasBegun = false;
    bool m_isPartOver = false;
    bool m_hasEnded = false;
};

} // namespace scenedetect
