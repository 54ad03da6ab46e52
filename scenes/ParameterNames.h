// The words for the parameters of the picture comparison, in options, tables and reports.
#pragma once

#include "engine/DetectionParameters.h"

#include <array>

namespace scenedetect {

/// In the order of KxDetectionParameter; lower case, words joined by hyphens.
inline constexpr std::array<const char*, kDetectionParameters.size()> kParameterNames = {
    "cut-threshold", "dark-level", "clamp", "votes", "longest-scene"};

} // namespace scenedetect
