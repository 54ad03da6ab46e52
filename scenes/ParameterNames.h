// The words for the parameters of the picture comparison, in options, tables and reports.
#pragma once

#include "engine/DetectionParameters.h"

#include <array>
#include <string>

namespace scenedetect {

/// In the order of KxDetectionParameter; lower case, words joined by hyphens.
inline constexpr std::array<const char*, kDetectionParameters.size()> kParameterNames = {
    "cut-threshold", "dark-level", "clamp",      "votes",      "longest-scene",
    "area-left",     "area-top",   "area-width", "area-height"};

/// The area of the picture that is compared, as kxscenes takes it: "0%,0%,100%,85.5%".
[[nodiscard]] std::string AreaText(const DetectionParameters& parameters);

} // namespace scenedetect
