// Which scenes of the picture comparison are edges of flashes.
#pragma once

#include "scenes/transitions/MeasureRing.h"

namespace scenedetect {

/// Frames of the longest flash.
inline constexpr std::int32_t kLongestFlash = 4;
/// Frames after a cut that say whether it is the edge of a flash.
inline constexpr std::int64_t kFlashLookAhead = std::int64_t{2} * kLongestFlash;

/// Whether the cut at this frame begins no scene: the picture comes back within `kLongestFlash` frames, or
/// the cut is one of two on either side of a flash that hides a true one, and not the true one.
[[nodiscard]] bool IsFlashEdge(const MeasureRing& frames, std::int64_t cut);

} // namespace scenedetect
