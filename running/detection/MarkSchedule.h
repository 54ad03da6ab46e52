// When the marks of the command line are due.
#pragma once

#include "scenes/IKxSceneDetect.h"

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

namespace scenedetect {

/// A mark is set before the sample at which the filter then places its scene: the one at the mark's position,
/// or under "video", which places scenes two samples back, the second after it. One thread at a time.
class MarkSchedule {
  public:
    /// `marks` ascend, without duplicates. Position 0 is a scene anyway and needs no mark.
    MarkSchedule(std::vector<std::uint32_t> marks, KxDetectionMethod method);

    /// Whether a mark is due before this sample. Samples are asked for in order, from 0.
    [[nodiscard]] bool IsDue(std::int64_t sample);
    /// The marks that did not become due.
    [[nodiscard]] std::span<const std::uint32_t> Remaining() const;

  private:
    const std::vector<std::uint32_t> m_marks;
    const std::int64_t m_delay;
    std::size_t m_next = 0;
};

} // namespace scenedetect
