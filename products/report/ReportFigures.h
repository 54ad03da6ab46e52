// Each frame's figures in columns, a byte each, as the report carries them.
#pragma once

#include "reading/timing/SampleTable.h"
#include "reading/timing/TimeScale.h"
#include "scenes/IKxSceneDetect.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <iterator>
#include <string>
#include <vector>

namespace scenedetect {

/// Rows are the frames that were measured, from 0. One thread.
class ReportFigures {
  public:
    /// From this row on frames go up by one and times by the usual step.
    struct Place {
        std::int64_t row;
        std::int64_t frame;
        std::int64_t time;
    };
    /// A column's name, and its numbers little-endian.
    struct Column {
        std::string name;
        std::vector<std::uint8_t> bytes;
    };

    void Begin(const TimeScale& scale);
    /// The next frame's. Differences and levels in 0..255; distances of each row or of none.
    void Add(const FilePlace& place, const KxFrameFigures& figures, const KxFrameDistances& distances);

    [[nodiscard]] std::int64_t Rows() const { return static_cast<std::int64_t>(m_difference.size()); }
    /// The usual duration of a frame, in units of the time scale.
    [[nodiscard]] std::int64_t Step() const { return m_step; }
    /// After the last row, if its duration is the usual one.
    [[nodiscard]] FilePlace End() const { return {m_next.frame, m_next.time}; }
    /// Times go too unevenly for a list of places: a column of durations tells them.
    [[nodiscard]] bool HasDurations() const { return m_unevenTimes > kMostUneven; }
    /// With durations those where frames do not go up by one.
    [[nodiscard]] std::vector<Place> Places() const;
    /// `end` is the time after the last row.
    [[nodiscard]] std::vector<Column> Columns(std::int64_t end) const;

  private:
    static constexpr std::size_t kMostUneven = 1000;

    [[nodiscard]] std::vector<std::uint8_t> Durations(std::int64_t end) const;

    std::int64_t m_step = 1;
    std::vector<std::uint8_t> m_difference;
    std::vector<std::uint8_t> m_level;
    std::array<std::vector<std::uint8_t>, std::size(KxDistanceSpans)> m_back;
    std::vector<std::uint8_t> m_variance;
    std::vector<std::uint8_t> m_detail;
    std::vector<Place> m_places;
    std::size_t m_unevenTimes = 0;
    Place m_next{}; // where the places so far put the next row
};

} // namespace scenedetect
