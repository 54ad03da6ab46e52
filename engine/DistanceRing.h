// How far a frame is from earlier ones: grids of a run's last frames, more than the rule of cuts needs.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <vector>

namespace scenedetect {

class Detector;

/// The frames back that distances are measured to, ascending. The shortest ones tell pictures that come back
/// from pictures that are new; over the long ones gradual changes add up.
inline constexpr std::array<std::int32_t, 8> kDistanceSpans = {2, 3, 4, 5, 8, 16, 32, 64};

inline constexpr std::int32_t kNoDistance = -1;

/// Of one frame.
struct Distances {
    /// Mean absolute differences, 0..255, in the order of `kDistanceSpans`; `kNoDistance` where the run has
    /// no such frame yet.
    std::array<std::int32_t, kDistanceSpans.size()> back{};
    /// Mean square deviation of its samples from their mean: the contrast, which a mixed picture lacks.
    std::int32_t variance = kNoDistance;
};

/// Used by one thread. Holds no memory before the first `Begin`.
class DistanceRing {
  public:
    /// A run begins, whose grids have as many samples; forgets every frame. Throws std::bad_alloc.
    void Begin(std::int32_t sampleCount);
    /// Gives the memory back.
    void End() { m_grids = {}; }
    [[nodiscard]] bool IsOpen() const { return !m_grids.empty(); }

    /// Of the current grid of `detector`, measured as it measures differences; the grid is kept.
    [[nodiscard]] Distances Measure(Detector& detector);

  private:
    [[nodiscard]] std::uint8_t* Grid(std::int64_t frame);

    std::vector<std::uint8_t> m_grids;
    std::size_t m_sampleCount = 0;
    std::int64_t m_frames = 0; // since `Begin`
};

} // namespace scenedetect
