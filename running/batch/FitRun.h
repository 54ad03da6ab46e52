// The parameters that give a list's scenes best, from the figures of a run.
#pragma once

#include "products/stats/StatsFile.h"
#include "reading/readers/MediaInfo.h"
#include "running/batch/RunPlan.h"
#include "scenes/rule/RuleFit.h"

#include <string>

namespace scenedetect {

/// Begins with `own`, the settings of the run that measured with what was given; what was given stays.
/// HostError for a list that can't be read or is of another film, and as DecideAgain has it.
[[nodiscard]] RuleFit FitList(const BatchSettings& settings, const Stats& stats, const MediaInfo& media,
                              const RuleSettings& own);

/// "cut threshold 17 gives 41 of your 42 cuts and one more".
[[nodiscard]] std::string FitText(const RuleFit& fit, const RuleSettings& own);

/// The command line that has this of the input; its words are safe for a shell.
[[nodiscard]] std::string FitCommand(const RuleFit& fit, const SceneLength& length, const std::string& input);

} // namespace scenedetect
