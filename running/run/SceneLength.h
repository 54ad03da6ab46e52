// How long a scene has to be, as users say it.
#pragma once

#include "reading/timing/TimePoint.h"
#include "scenes/rule/SceneLengths.h"

#include <optional>

namespace scenedetect {

/// What `--min-scene` and `--short-scenes` say.
struct SceneLength {
    std::optional<TimePoint> least; ///< so much after its first frame a scene may end; none: anywhere
    ShortRule rule = ShortRule::Merge;

    /// HostError when a timecode does not go with the rate.
    [[nodiscard]] std::optional<LeastLength> LeastAt(const TimeScale& scale) const {
        if (!least)
            return std::nullopt;
        const TimePosition length = Resolve(*least, scale);
        return LeastLength{length.frame.value_or(length.time), !length.frame};
    }
};

} // namespace scenedetect
