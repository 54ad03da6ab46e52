// How far a frame is from earlier ones, as far as the rules on top of the decision need it.
#pragma once

#include <array>
#include <cstdint>

namespace scenedetect {

/// The frames back that distances are measured to, ascending. The shortest ones tell pictures that come back
/// from pictures that are new; over the long ones gradual changes add up.
inline constexpr std::array<std::int32_t, 8> kDistanceSpans = {2, 3, 4, 5, 8, 16, 32, 64};

inline constexpr std::int32_t kNoDistance = -1;
inline constexpr std::int32_t kDetailScale = 64;

/// Of one frame.
struct Distances {
    /// Mean absolute differences, 0..255, in the order of `kDistanceSpans`; `kNoDistance` where the run has
    /// no such frame yet.
    std::array<std::int32_t, kDistanceSpans.size()> back{};
    /// Mean square deviation of its samples from their mean: the contrast, which a mixed picture lacks.
    std::int32_t variance = kNoDistance;
    /// Mean absolute difference of samples that are neighbours in a row, times `kDetailScale`: the
    /// fine contrast, which unlike pictures hardly share.
    std::int32_t detail = kNoDistance;
};

} // namespace scenedetect
