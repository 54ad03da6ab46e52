// Finds dissolves: frames that are mixed of the picture before and the one after.
#pragma once

#include "scenes/transitions/MeasureRing.h"

#include <array>
#include <cstdint>
#include <optional>

namespace scenedetect {

/// Looks at windows of several lengths around each frame.
class DissolveFinder {
  public:
    /// Of a window, in frames on either side of its middle. The step is from picture to picture, so these
    /// find dissolves of 7 to 53 frames.
    static constexpr std::int64_t kShortest = 4;
    static constexpr std::int64_t kLongest = 26;

    /// The last frame of `frames` is new, or at the end of the run there is none at `now`. The middle of a
    /// dissolve that is found by it.
    [[nodiscard]] std::optional<std::int64_t> Note(const MeasureRing& frames, std::int64_t now);
    /// No dissolve has its middle before this frame that is not found yet.
    [[nodiscard]] std::int64_t SettledBefore(std::int64_t now) const;

  private:
    // What windows ask of each frame, reckoned once.
    struct Frame {
        std::int64_t detail = 0; ///< its square
        std::int64_t from = 0;   ///< the first frame of a window that ends here
    };
    // Windows whose middles are close to each other: one dissolve, if they are enough.
    struct Group {
        std::int64_t first = 0; ///< middle
        std::int64_t last = 0;
        std::int64_t sum = 0; ///< of the middles
        std::int64_t count = 0;

        /// What changes for longer is motion, or light.
        [[nodiscard]] bool IsShort() const { return last - first <= 64; }
    };

    [[nodiscard]] Frame& At(std::int64_t frame) { return m_frames[static_cast<std::size_t>(frame) % 64]; }
    /// The windows around it that are mixed.
    [[nodiscard]] std::int64_t CountMixed(const MeasureRing& frames, std::int64_t middle);

    std::array<Frame, 64> m_frames{}; // enough for a window
    std::int64_t m_from = 0;          // that of the last frame
    Group m_group;
};

} // namespace scenedetect
