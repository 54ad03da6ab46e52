// The course of difference and level over a run of any length, in a bounded number of points.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

namespace scenedetect {

/// What is to be seen of some frames that follow each other.
struct TimelinePoint {
    std::int64_t frame = 0; ///< the first, in frames of the nominal rate
    std::int32_t mostDifference = 0;
    std::int32_t leastLevel = 0;
    std::int32_t mostLevel = 0;
    bool isDark = false; ///< one of them is the darkest of a fade
};

/// One point a frame as long as there is room, then of two, four and so on: peaks stay in sight. One thread.
class Timeline {
  public:
    static constexpr std::size_t kMostPoints = 4096;

    /// The next frame; 0..255 both.
    void Add(std::int64_t frame, std::int32_t difference, std::int32_t level, bool isDark);
    [[nodiscard]] const std::vector<TimelinePoint>& Points() const { return m_points; }

  private:
    void Halve();

    std::vector<TimelinePoint> m_points;
    std::int64_t m_framesPerPoint = 1;
    std::int64_t m_framesInLast = 0;
};

} // namespace scenedetect
