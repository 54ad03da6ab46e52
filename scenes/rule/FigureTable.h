// A run's figures in columns, as the rule takes them whole.
#pragma once

#include "engine/decision/Distances.h"
#include "scenes/rule/SceneLengths.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <vector>

namespace scenedetect {

/// As many of each as there are rows; distances of all rows or none.
struct FigureTable {
    std::vector<std::uint8_t> difference;
    std::vector<std::uint8_t> level;
    std::array<std::vector<std::uint8_t>, kDistanceSpans.size()> back;
    std::vector<std::uint16_t> variance;
    std::vector<std::uint16_t> detail;
    std::vector<FrameAndTime> places;
    FrameAndTime end; ///< after the last row

    [[nodiscard]] std::int64_t Rows() const { return static_cast<std::int64_t>(difference.size()); }
    [[nodiscard]] bool HasDistances() const { return !variance.empty(); }
    [[nodiscard]] Distances DistancesOf(std::int64_t row) const {
        Distances distances;
        const auto at = static_cast<std::size_t>(row);
        for (std::size_t i = 0; i < back.size(); ++i)
            distances.back[i] = row < kDistanceSpans[i] ? kNoDistance : back[i][at];
        distances.variance = variance[at];
        distances.detail = detail[at];
        return distances;
    }
};

} // namespace scenedetect
