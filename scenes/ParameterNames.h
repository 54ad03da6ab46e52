// The words for the parameters of the picture comparison, in options, tables and reports.
#pragma once

#include "engine/decision/DetectionParameters.h"

#include <array>
#include <string>

namespace scenedetect {

/// In the order of KxDetectionParameter; lower case, words joined by hyphens.
inline constexpr std::array<const char*, kDetectionParameters.size()> kParameterNames = {
    "cut-threshold", "dark-level", "clamp",      "votes",      "longest-scene",
    "area-left",     "area-top",   "area-width", "area-height"};

/// What turning each does, in the order of KxDetectionParameter, of those that have an option each: one
/// sentence without its full stop.
inline constexpr std::array<const char*, 5> kParameterEffects = {
    "By how much a frame's difference must exceed its neighbours' to be a cut: "
    "higher finds fewer cuts, lower also faint ones",
    "Mean level up to which a frame is dark, so that the darkest of a fade starts a scene: "
    "higher also takes fades that stay brighter, -1 takes none",
    "The most that one sample adds to a difference: "
    "lower makes great changes of small parts, such as flashes and captions, count less",
    "How many of its four neighbours a cut must exceed: "
    "4 is strictest, lower also finds cuts amid motion, and false ones",
    "Frames after which a scene ends even without a cut: lower splits long scenes, 0 sets no limit"};

/// The area of the picture that is compared, as kxscenes takes it: "0%,0%,100%,85.5%".
[[nodiscard]] std::string AreaText(const DetectionParameters& parameters);

} // namespace scenedetect
