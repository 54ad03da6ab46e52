// What the picture comparison says of a run's last frames.
#pragma once

#include "engine/decision/Distances.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstdlib>

namespace scenedetect {

struct FrameMeasures {
    std::int32_t difference = 0;
    std::int32_t level = 0;
    Distances distances;
    bool isCut = false; ///< it finds a scene there
};

/// Frames are numbered from 0. No memory but its own.
class MeasureRing {
  public:
    /// Enough for the longest rest in a fade, with the ramps on either side.
    static constexpr std::int64_t kFrames = 512;

    void Add(const FrameMeasures& measures) {
        m_frames[static_cast<std::size_t>(m_end++ % kFrames)] = measures;
    }
    /// After the last frame.
    [[nodiscard]] std::int64_t End() const { return m_end; }
    [[nodiscard]] bool Has(std::int64_t frame) const {
        return frame >= std::max<std::int64_t>(0, m_end - kFrames) && frame < m_end;
    }
    /// Of a frame that it has.
    [[nodiscard]] const FrameMeasures& At(std::int64_t frame) const {
        return m_frames[static_cast<std::size_t>(frame) % kFrames];
    }
    /// How far two frames' levels are apart, both of which it has.
    [[nodiscard]] std::int32_t LevelStep(std::int64_t one, std::int64_t other) const {
        return std::abs(At(one).level - At(other).level);
    }
    /// To the frame `span` before, one of kDistanceSpans; kNoDistance where one of both is not there.
    [[nodiscard]] std::int32_t Distance(std::int64_t frame, std::int32_t span) const {
        const auto place =
            std::find(kDistanceSpans.begin(), kDistanceSpans.end(), span) - kDistanceSpans.begin();
        return Has(frame) ? At(frame).distances.back[static_cast<std::size_t>(place)] : kNoDistance;
    }
    /// Whether a scene is found at one of these frames.
    [[nodiscard]] bool HasCut(std::int64_t first, std::int64_t last) const {
        for (std::int64_t frame = first; frame <= last; ++frame)
            if (Has(frame) && At(frame).isCut)
                return true;
        return false;
    }

  private:
    std::array<FrameMeasures, kFrames> m_frames{};
    std::int64_t m_end = 0;
};

} // namespace scenedetect
