// What a command asks of all its inputs, and what follows for each of them.
#pragma once

#include "products/files/OutputClaims.h"
#include "running/listeners/OutputSettings.h"
#include "running/run/RunSettings.h"

#include <string>
#include <vector>

namespace scenedetect {

/// Checked for sense.
struct BatchSettings {
    std::vector<std::string> inputs;
    DetectionSettings detection;
    std::string xmlPath; ///< pattern of the scene-list files; empty: none
    RangeChoice range;
    SceneLength length{};
    OutputSettings outputs; ///< paths are patterns
    std::string listPath;   ///< pattern of the lists of scenes that are read; empty: scenes are found
    std::vector<std::string> savedStatsPaths; ///< figures to decide from, in place of an input; empty: none
    std::string fitPath;                      ///< of a list that parameters are fitted to; empty: none
    std::string configPath;                   ///< of the options that were read from a file; empty: none
    bool decodesFast = false;                 ///< with the decoder's shortcuts
    int jobs = 1;                             ///< inputs that are read at the same time
};

/// One input with its outputs, whose paths are settled.
struct RunPlan {
    RunSettings run;
    OutputSettings outputs;
    std::string fault{}; ///< why there is nothing to run; empty: there is

    /// Whether nothing but the standard output is written.
    [[nodiscard]] bool OnlyPrints() const;
};

/// One plan an input, folders being what is in them. HostError when two outputs would be the same file, two
/// inputs would have the same list of scenes, when
/// one would overwrite an input or cannot be written.
[[nodiscard]] std::vector<RunPlan> MakePlans(const BatchSettings& settings, OutputClaims& claims);

} // namespace scenedetect
