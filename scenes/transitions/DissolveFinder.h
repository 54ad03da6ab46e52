// Finds dissolves: frames that are mixed of the picture before and the one after.
#pragma once

#include "scenes/transitions/MeasureRing.h"

#include <array>
#include <cstdint>
#include <optional>

namespace scenedetect {

struct Dissolve {
    std::int64_t first = 0; ///< frames that may belong to it
    std::int64_t last = 0;
    std::int64_t middle = 0;
};

/// Looks at windows of 16 and of 32 frames, the end of each at every frame.
class DissolveFinder {
  public:
    /// Frames after a window that say how the picture moves without it.
    static constexpr std::int64_t kLookAhead = 32;

    /// The last frame of `frames` is new, or at the end of the run there is none at `now`. What is found by
    /// it.
    [[nodiscard]] std::optional<Dissolve> Note(const MeasureRing& frames, std::int64_t now);
    /// No dissolve has its middle before this frame that is not found yet.
    [[nodiscard]] std::int64_t SettledBefore(std::int64_t now) const;

  private:
    /// Windows one after another that look like a part of a dissolve, but for short gaps.
    struct Run {
        std::int64_t first = 0; ///< end of the first window
        std::int64_t last = 0;
        int count = 0; ///< 0: none under way
        std::int32_t distance = 0;
    };
    /// Runs that overlap are of one dissolve.
    struct Found {
        Dissolve dissolve;
        std::int32_t distance; ///< the most that any window has; the middle is that of its run
    };

    void Close(Run& run, std::int32_t span);

    std::array<Run, 2> m_runs;
    std::optional<Found> m_found;
};

} // namespace scenedetect
