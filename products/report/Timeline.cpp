#include "products/report/Timeline.h"

#include <algorithm>

namespace scenedetect {
namespace {

void Join(TimelinePoint& point, const TimelinePoint& next) {
    point.mostDifference = std::max(point.mostDifference, next.mostDifference);
    point.leastLevel = std::min(point.leastLevel, next.leastLevel);
    point.mostLevel = std::max(point.mostLevel, next.mostLevel);
    point.isDark = point.isDark || next.isDark;
}

} // namespace

void Timeline::Add(std::int64_t frame, std::int32_t difference, std::int32_t level, bool isDark) {
    const TimelinePoint point{frame, difference, level, level, isDark};
    if (!m_points.empty() && m_framesInLast < m_framesPerPoint) {
        Join(m_points.back(), point);
        ++m_framesInLast;
        return;
    }
    if (m_points.size() == kMostPoints)
        Halve();
    m_points.push_back(point);
    m_framesInLast = 1;
}

void Timeline::Halve() {
    static_assert(kMostPoints % 2 == 0);
    for (std::size_t i = 0; i < m_points.size(); i += 2) {
        Join(m_points[i], m_points[i + 1]);
        m_points[i / 2] = m_points[i];
    }
    m_points.resize(m_points.size() / 2);
    m_framesPerPoint *= 2;
}

} // namespace scenedetect
