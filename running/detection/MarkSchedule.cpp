#include "running/detection/MarkSchedule.h"

#include <utility>

namespace scenedetect {

MarkSchedule::MarkSchedule(std::vector<std::uint32_t> marks, KxDetectionMethod method)
    : m_marks(std::move(marks)),
      m_delay(method == KxMethodVideo ? 2 : 0),
      m_next(!m_marks.empty() && m_marks.front() == 0 ? 1 : 0) {}

bool MarkSchedule::IsDue(std::int64_t sample) {
    if (m_next == m_marks.size() || m_marks[m_next] + m_delay != sample)
        return false;
    ++m_next;
    return true;
}

std::span<const std::uint32_t> MarkSchedule::Remaining() const {
    return std::span(m_marks).subspan(m_next);
}

} // namespace scenedetect
