// Scenes found again from a run's figures, with other parameters and without the pictures.
#pragma once

#include "products/stats/StatsFile.h"
#include "scenes/rule/DecideRows.h"

#include <vector>

namespace scenedetect {

/// The figures in columns.
[[nodiscard]] FigureTable TableOf(const Stats& stats);

/// The scenes that a run with "Video" alone would have with these settings in the pictures that were
/// measured; marks are none. What was filled, dark and cut in `stats`, and its parameters, become those of
/// that run. HostError for a part, for another clamp or area than the figures were measured with, which act
/// inside the difference, and for effects where there are no distances.
[[nodiscard]] std::vector<SceneRows> DecideAgain(Stats& stats, const RuleSettings& settings);

/// HostError as DecideAgain has it.
void RequireDecidable(const Stats& stats, const RuleSettings& settings);

} // namespace scenedetect
