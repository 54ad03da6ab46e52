#include "engine/ComparedSamples.h"

#include "engine/decision/Distances.h"
#include "engine/kernels/ByteSums.h"
#include "platform/CpuFeatures.h"

#include <algorithm>

namespace scenedetect {
namespace {

struct Range {
    std::int64_t first;
    std::int64_t end;
};

/// Of `cells` cells side by side on `pixels` pixels those in an area that is given in per mille; one or more.
Range CellsIn(std::int64_t start, std::int64_t length, std::int64_t pixels, std::int64_t cell,
              std::int64_t cells) {
    const auto countBefore = [&](std::int64_t mille) {
        std::int64_t count = 0;
        const auto twiceTheCentre = [&] { return cell * count + std::min(cell * (count + 1), pixels); };
        while (count < cells && twiceTheCentre() * kWholeArea < 2 * mille * pixels)
            ++count;
        return count;
    };
    const Range range{countBefore(start), countBefore(start + length)};
    if (range.first < range.end)
        return range;
    const std::int64_t middle = (2 * start + length) * pixels / (std::int64_t{2} * kWholeArea * cell);
    const std::int64_t nearest = std::clamp<std::int64_t>(middle, 0, cells - 1);
    return {nearest, nearest + 1};
}

} // namespace

ComparedSamples::ComparedSamples(const DetectionParameters& area, const GridPlaces& places)
    : m_count(0), m_columns(static_cast<std::size_t>(places.columns)) {
    const std::int64_t pitch = places.columns;
    const Range columns = CellsIn(area.areaLeft, area.areaWidth, places.width, places.cell, pitch);
    // Rows that have a sample in the first of these columns.
    const std::int64_t rowCount = (places.samples - columns.first + pitch - 1) / pitch;
    const Range rows = CellsIn(area.areaTop, area.areaHeight, places.height, places.cell,
                               std::max<std::int64_t>(rowCount, 1));
    const auto add = [&](std::int64_t first, std::int64_t end) {
        end = std::min<std::int64_t>(end, places.samples);
        m_spans.push_back({static_cast<std::size_t>(first), static_cast<std::size_t>(end - first)});
        m_count += m_spans.back().count;
    };
    if (columns.end - columns.first == pitch) {
        add(rows.first * pitch, rows.end * pitch);
        return;
    }
    for (std::int64_t row = rows.first; row < rows.end; ++row)
        add(row * pitch + columns.first, row * pitch + columns.end);
}

std::int32_t ComparedSamples::MeanDifference(const std::uint8_t* slot, const std::uint8_t* other,
                                             std::int32_t clamp) const {
    if (m_count == 0)
        return 0;
    // No difference is below a negative limit: every sample adds the limit itself.
    if (clamp < 0)
        return clamp;
    const auto limit = static_cast<std::uint8_t>(std::min(clamp, 255));
    const DifferenceSum sumOf = SelectDifferenceSum(CpuFeatures());
    std::uint64_t sum = 0;
    for (const auto& [first, count] : m_spans)
        sum += sumOf(slot + first, other + first, count, limit);
    return static_cast<std::int32_t>(sum / m_count);
}

std::int32_t ComparedSamples::MeanLevel(const std::uint8_t* slot) const {
    if (m_count == 0)
        return 0;
    const ByteSum sumOf = SelectByteSum(CpuFeatures());
    std::uint64_t sum = 0;
    for (const auto& [first, count] : m_spans)
        sum += sumOf(slot + first, count);
    return static_cast<std::int32_t>(sum / m_count);
}

std::int32_t ComparedSamples::Variance(const std::uint8_t* slot) const {
    if (m_count == 0)
        return 0;
    std::uint64_t sum = 0;
    std::uint64_t squares = 0;
    for (const auto& [first, count] : m_spans)
        for (std::size_t i = first; i < first + count; ++i) {
            sum += slot[i];
            squares += std::uint64_t{slot[i]} * slot[i];
        }
    const double mean = static_cast<double>(sum) / static_cast<double>(m_count);
    return static_cast<std::int32_t>(static_cast<double>(squares) / static_cast<double>(m_count) -
                                     mean * mean);
}

std::int32_t ComparedSamples::Detail(const std::uint8_t* slot) const {
    const DifferenceSum sumOf = SelectDifferenceSum(CpuFeatures());
    std::uint64_t sum = 0;
    std::uint64_t pairs = 0;
    // A span begins a row, or lies in one.
    for (const auto& [first, count] : m_spans)
        for (std::size_t done = 0; done < count; done += m_columns) {
            const std::size_t rowPairs = std::min(m_columns, count - done) - 1;
            sum += sumOf(slot + first + done, slot + first + done + 1, rowPairs, 255);
            pairs += rowPairs;
        }
    return pairs == 0 ? 0 : static_cast<std::int32_t>(sum * kDetailScale / pairs);
}

} // namespace scenedetect
