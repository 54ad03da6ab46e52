// How far a frame is from earlier ones: grids of a run's last frames, more than the rule of cuts needs.
#pragma once

#include "engine/decision/Distances.h"

#include <cstddef>
#include <cstdint>
#include <vector>

namespace scenedetect {

class Detector;

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
