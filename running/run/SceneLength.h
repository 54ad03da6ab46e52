// How long a scene has to be, and what becomes of a shorter one.
#pragma once

#include "reading/timing/TimePoint.h"

#include <array>
#include <optional>

namespace scenedetect {

enum class ShortRule {
    Merge,     ///< becomes a part of the one before; the first takes what follows until it is long enough
    Drop,      ///< is left out: its frames belong to no scene
    MergeLast, ///< stays, but for the last one, which becomes a part of the one before
};

/// In the order of ShortRule.
inline constexpr std::array<const char*, 3> kShortRules = {"merge", "drop", "merge-last"};

/// What `--min-scene` and `--short-scenes` say.
struct SceneLength {
    std::optional<TimePoint> least; ///< so much after its first frame a scene may end; none: anywhere
    ShortRule rule = ShortRule::Merge;
};

} // namespace scenedetect
