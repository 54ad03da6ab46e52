// Which samples of a grid are compared: all of them, or those of a part of the picture.
#pragma once

#include "engine/decision/DetectionParameters.h"

#include <cstddef>
#include <cstdint>
#include <vector>

namespace scenedetect {

/// Where the samples of a slot lie in the picture: square cells, row after row from the top left.
struct GridPlaces {
    std::int64_t width; ///< of the picture in pixels
    std::int64_t height;
    std::int32_t cell;    ///< side of a cell in pixels; the picture's edge cuts cells off
    std::int32_t columns; ///< samples from one row to the next, 1 or more
    std::int32_t samples; ///< in the slot, 1 or more; the last row may lack some
};

/// Settled once for a run; then any thread.
class ComparedSamples {
  public:
    /// All `count` samples of a slot, whose rows have `columns`, 1 or more.
    explicit ComparedSamples(std::size_t count = 0, std::int32_t columns = 1)
        : m_spans{{0, count}}, m_count(count), m_columns(static_cast<std::size_t>(columns)) {}
    /// Those of cells whose centres lie in the area that the parameters have: on its left and upper edge,
    /// too, but not on the others. Where a column or row of cells has none in it, the nearest to its middle
    /// counts.
    ComparedSamples(const DetectionParameters& area, const GridPlaces& places);

    [[nodiscard]] std::size_t Count() const { return m_count; }
    /// The mean absolute difference of two slots, each sample's at most `clamp`; truncated, 0 of no samples.
    [[nodiscard]] std::int32_t MeanDifference(const std::uint8_t* slot, const std::uint8_t* other,
                                              std::int32_t clamp) const;
    /// The mean of a slot, likewise.
    [[nodiscard]] std::int32_t MeanLevel(const std::uint8_t* slot) const;
    /// The mean square deviation of a slot's samples from their mean, likewise.
    [[nodiscard]] std::int32_t Variance(const std::uint8_t* slot) const;
    /// The mean absolute difference of samples that are neighbours in a row, times kDetailScale, likewise.
    [[nodiscard]] std::int32_t Detail(const std::uint8_t* slot) const;

  private:
    struct Span {
        std::size_t first;
        std::size_t count;
    };

    std::vector<Span> m_spans; // one where the area is as wide as the grid
    std::size_t m_count;
    std::size_t m_columns; // from one row to the next
};

} // namespace scenedetect
