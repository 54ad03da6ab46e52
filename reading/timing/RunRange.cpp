#include "reading/timing/RunRange.h"

#include <utility>

namespace scenedetect {

RunRange::RunRange(const RangeChoice& choice, const TimeScale& scale, const FilmPart* part)
    : m_scale(scale), m_duration(choice.duration), m_part(part) {
    if (choice.start)
        m_start = Resolve(*choice.start, scale);
    if (choice.end)
        m_end = Resolve(*choice.end, scale);
    // Now rather than at its first frame.
    if (m_duration)
        (void)Resolve(*m_duration, scale);
}

bool RunRange::Begins(const FilePlace& place) const {
    if (m_hasBegun)
        return true;
    if (m_part)
        return m_part->BeginsWithFile() || m_part->IsFirst(place);
    return !m_start || m_start->IsReachedBy(place);
}

bool RunRange::HasBegun(const FilePlace& place) {
    if (!Begins(place))
        return false;
    if (!std::exchange(m_hasBegun, true) && m_duration)
        m_end = Resolve(*m_duration, m_scale, place);
    return true;
}

bool RunRange::IsOver(const FilePlace& place) {
    m_hasEnded = m_isPartOver || (m_end && m_end->IsReachedBy(place));
    return m_hasEnded;
}

} // namespace scenedetect
