// Finds fades through black or white by frames that are nothing else.
#pragma once

#include "scenes/transitions/MeasureRing.h"

#include <cstdint>
#include <optional>

namespace scenedetect {

/// All frames inclusive.
struct Fade {
    std::int64_t first = 0; ///< that is black or white
    std::int64_t last = 0;
    std::int64_t darkFrom = 0; ///< from here to `darkTo` it is nearer to black (white) than to its pictures
    std::int64_t darkTo = 0;
    std::int64_t rampFrom = 0; ///< from here to `rampTo` the level goes one way and back
    std::int64_t rampTo = 0;
    bool isScene = false;  ///< else there is no picture on one side, or a cut on both
    bool hasBefore = true; ///< a picture; else only the one after it counts
    bool hasAfter = true;  ///< likewise
};

class FadeFinder {
  public:
    /// Frames that are looked at before and after a rest.
    static constexpr std::int64_t kReach = 64;
    /// A rest of more frames is a scene of its own: it is told as two fades.
    static constexpr std::int64_t kLongestRest = 256;

    /// The last frame of `frames` is new, or at the end of the run there is none at `now`. What is found by
    /// it.
    [[nodiscard]] std::optional<Fade> Note(const MeasureRing& frames, std::int64_t now);
    /// No fade begins before this frame that is not found yet.
    [[nodiscard]] std::int64_t SettledBefore(std::int64_t now) const {
        return (m_rest && !m_rest->isLong ? m_rest->first : now) - kReach;
    }

  private:
    struct Rest {
        std::int64_t first;
        std::int64_t last;
        std::int32_t level; ///< darkest, or brightest
        bool isDark;
        bool isLong = false;
    };

    [[nodiscard]] Fade Judge(const MeasureRing& frames, bool looksBefore, bool looksAfter) const;

    std::optional<Rest> m_rest;
};

} // namespace scenedetect
