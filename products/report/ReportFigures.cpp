#include "products/report/ReportFigures.h"

#include "engine/decision/Distances.h"

#include <algorithm>

namespace scenedetect {
namespace {

void Append(std::vector<std::uint8_t>& bytes, std::uint64_t number, int count) {
    for (int i = 0; i < count; ++i)
        bytes.push_back(static_cast<std::uint8_t>(number >> 8 * i));
}

} // namespace

void ReportFigures::Begin(const TimeScale& scale) {
    m_step = PlaceAfter({}, scale).time;
}

void ReportFigures::Add(const FilePlace& place, const KxFrameFigures& figures,
                        const KxFrameDistances& distances) {
    const std::int64_t row = Rows();
    if (row == 0 || place.frame != m_next.frame || place.time != m_next.time) {
        if (row != 0 && place.frame == m_next.frame)
            ++m_unevenTimes;
        m_places.push_back({row, place.frame, place.time});
    }
    m_next = {row + 1, place.frame + 1, place.time + m_step};
    m_difference.push_back(static_cast<std::uint8_t>(figures.nDifference));
    m_level.push_back(static_cast<std::uint8_t>(figures.nLevel));
    if (distances.nVariance == kNoDistance)
        return;
    // Where there is none follows from the row.
    for (std::size_t i = 0; i < m_back.size(); ++i)
        m_back[i].push_back(static_cast<std::uint8_t>(distances.nDistance[i]));
    Append(m_variance, static_cast<std::uint64_t>(distances.nVariance), 2);
    Append(m_detail, static_cast<std::uint64_t>(distances.nDetail), 2);
}

std::vector<ReportFigures::Place> ReportFigures::Places() const {
    if (!HasDurations())
        return m_places;
    std::vector<Place> jumps;
    for (const Place& place : m_places)
        if (jumps.empty() || place.frame - place.row != jumps.back().frame - jumps.back().row)
            jumps.push_back(place);
    return jumps;
}

std::vector<std::uint8_t> ReportFigures::Durations(std::int64_t end) const {
    std::vector<std::uint8_t> bytes;
    std::int64_t time = 0;
    const auto appendUntil = [&](std::int64_t next) {
        Append(bytes, static_cast<std::uint64_t>(std::clamp<std::int64_t>(next - time, 0, UINT32_MAX)), 4);
        time = next;
    };
    auto place = m_places.begin();
    time = place->time;
    ++place;
    for (std::int64_t row = 1; row < Rows(); ++row)
        appendUntil(place != m_places.end() && place->row == row ? (place++)->time : time + m_step);
    appendUntil(end);
    return bytes;
}

std::vector<ReportFigures::Column> ReportFigures::Columns(std::int64_t end) const {
    std::vector<Column> columns = {{"difference", m_difference}, {"level", m_level}};
    if (!m_variance.empty()) {
        for (std::size_t i = 0; i < m_back.size(); ++i)
            columns.push_back({"back" + std::to_string(KxDistanceSpans[i]), m_back[i]});
        columns.push_back({"variance", m_variance});
        columns.push_back({"detail", m_detail});
    }
    if (HasDurations())
        columns.push_back({"duration", Durations(end)});
    return columns;
}

} // namespace scenedetect
