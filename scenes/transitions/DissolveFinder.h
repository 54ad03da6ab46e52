// Finds dissolves: frames that are mixed of the picture before and the one after.
#pragma once

#include "scenes/transitions/MeasureRing.h"

#include <array>
#include <cstdint>
#include <optional>

namespace scenedetect {

/// Looks at windows of several lengths, the ends of each at every frame.
class DissolveFinder {
  public:
    /// Frames after a window that say how the picture moves without it.
    static constexpr std::int64_t kLookAhead = 32;

    /// The last frame of `frames` is new, or at the end of the run there is none at `now`. The middle of a
    /// dissolve that is found by it.
    [[nodiscard]] std::optional<std::int64_t> Note(const MeasureRing& frames, std::int64_t now);
    /// No dissolve has its middle before this frame that is not found yet.
    [[nodiscard]] std::int64_t SettledBefore(std::int64_t now) const;

  private:
    /// Windows whose middles are close to each other: one dissolve, if they are enough.
    struct Group {
        std::int64_t first = 0; ///< middle
        std::int64_t last = 0;
        std::int64_t sum = 0; ///< of the middles
        std::int64_t count = 0;

        /// What changes for longer is motion, or light.
        [[nodiscard]] bool IsShort() const { return last - first <= 64; }
    };

    void Add(std::int64_t middle);

    // Those that may still grow; a window that finds no room is left out.
    std::array<Group, 4> m_groups{};
};

} // namespace scenedetect
