// A run's settings in words, for people and as options.
#pragma once

#include "engine/decision/DetectionParameters.h"
#include "running/run/RunSettings.h"

#include <string>
#include <utility>
#include <vector>

namespace scenedetect {

/// Names and values.
[[nodiscard]] std::vector<std::pair<std::string, std::string>>
SettingsOf(const RunSettings& run, const DetectionParameters& parameters);

/// The options of the run that say what is measured and what finds scenes beside the picture comparison: all
/// that saved figures can't be decided again with.
[[nodiscard]] std::vector<std::string> CommandOf(const RunSettings& run,
                                                 const DetectionParameters& parameters);

} // namespace scenedetect
