#include "engine/DistanceRing.h"

#include "engine/Detector.h"

#include <algorithm>

namespace scenedetect {
namespace {

// The current grid needs no slot before all the others were compared with it: it takes the oldest one's.
constexpr std::size_t kGrids = kDistanceSpans.back();

} // namespace

void DistanceRing::Begin(std::int32_t sampleCount) {
    m_sampleCount = static_cast<std::size_t>(sampleCount);
    m_grids.resize(kGrids * m_sampleCount);
    m_frames = 0;
}

std::uint8_t* DistanceRing::Grid(std::int64_t frame) {
    return m_grids.data() + static_cast<std::size_t>(frame) % kGrids * m_sampleCount;
}

Distances DistanceRing::Measure(Detector& detector) {
    Distances distances{.variance = detector.ComputeVariance(), .detail = detector.ComputeDetail()};
    std::ranges::transform(kDistanceSpans, distances.back.begin(), [&](std::int32_t span) {
        return span <= m_frames ? detector.DifferenceTo(Grid(m_frames - span)) : kNoDistance;
    });
    std::copy_n(detector.GetFrame(0), m_sampleCount, Grid(m_frames++));
    return distances;
}

} // namespace scenedetect
