// A run without its input: scenes found again from figures that an earlier run has saved.
#pragma once

#include "products/stats/StatsFile.h"
#include "reading/base/Console.h"
#include "running/batch/RunPlan.h"
#include "running/run/RunListener.h"

#include <cstdint>
#include <vector>

namespace scenedetect {

/// Scenes, and where those that were left out begin.
struct DecidedScenes {
    struct Gap {
        std::int64_t sample;
        FilePlace place;
    };
    std::vector<FoundScene> scenes;
    std::vector<Gap> gaps;
};

/// The scenes that "Video" finds in the figures with these parameters, with what `transitions` make of them,
/// each of the least length. `stats` becomes that of the run that had found them. HostError as DecideAgain
/// has it, and for transitions where the figures have no distances.
[[nodiscard]] DecidedScenes DecideScenes(Stats& stats, const DetectionParameters& parameters,
                                         const TransitionChoice& transitions, const SceneLength& length);
/// Of a run that measured all of these figures, which are not empty.
[[nodiscard]] RunEnd EndOf(const Stats& stats);

/// Prints the scenes and writes lists and report. HostError when the figures can't be read or used, or an
/// output not be written.
void DecideFromStats(const BatchSettings& settings, OutputClaims& claims, Console& console);

} // namespace scenedetect
