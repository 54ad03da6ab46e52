// Scenes found again from a run's figures, with other parameters and without the pictures.
#pragma once

#include "products/stats/StatsFile.h"

#include <cstdint>
#include <vector>

namespace scenedetect {

/// The positions (samples, and so row numbers, ascending) of the scenes that "Video" would find with these
/// parameters in the pictures that were measured; marks are none. What was filled, dark and cut in `stats`,
/// and its parameters, become those of that run. HostError for a part, and for another clamp or area than the
/// figures were measured with: they act inside the difference.
[[nodiscard]] std::vector<std::int64_t> DecideAgain(Stats& stats, const DetectionParameters& parameters);

} // namespace scenedetect
