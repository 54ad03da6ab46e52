// Follows the recording clock of a tape against the frames that go by.
#pragma once

#include "reading/dv/DvPacks.h"

#include <cstdint>
#include <optional>

namespace scenedetect {

/// What the clock shows at a frame, and where that frame lies.
struct ClockReading {
    std::int64_t seconds = 0; ///< since 1970, or of the day
    bool hasDate = false;
    std::int64_t position = 0; ///< of the frame, in ticks (kDvTicksPerSecond)
};

/// Nothing when the frame has no recording time.
[[nodiscard]] std::optional<ClockReading> ReadingOf(const DvPacks& packs, std::int64_t position);

/// Within one recording the clock and the frames keep the same distance, but for the second by which the
/// clock is rounded down. The distances that were seen are kept, as a range of that width; it moves along
/// with what follows, so that a clock may drift, or stand.
class RecordingClock {
  public:
    /// The seconds by which the clock has moved more than the frames, if by so many that this is no more the
    /// same recording: half a second of tolerance beside the rounding. Without dates it is the nearest of
    /// both directions within a day.
    [[nodiscard]] std::optional<std::int64_t> BreakAt(const ClockReading& reading) const;
    [[nodiscard]] bool HasReading() const { return m_hasReading; }
    /// Takes a reading; after a break the range begins anew.
    void Follow(const ClockReading& reading);

  private:
    [[nodiscard]] std::int64_t DistanceOf(const ClockReading& reading) const;

    bool m_hasReading = false;
    bool m_hasDate = false;   // the distances count from 1970
    std::int64_t m_least = 0; // ticks
    std::int64_t m_most = 0;
};

} // namespace scenedetect
