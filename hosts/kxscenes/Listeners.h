// Makes what a plan asks for: those that listen to its run.
#pragma once

#include "hosts/files/OutputClaims.h"
#include "hosts/kxscenes/RunListener.h"
#include "hosts/kxscenes/RunPlan.h"
#include "hosts/kxscenes/RunProgress.h"
#include "hosts/shared/Console.h"

#include <memory>
#include <vector>

namespace scenedetect {

/// All that write files, and show what they make when the frames have passed; what is given must outlive
/// them.
[[nodiscard]] std::vector<std::unique_ptr<RunListener>>
MakeListeners(const RunPlan& plan, OutputClaims& claims, Console& console, RunProgress& progress);

/// The lists and the report of a run whose figures are saved ones: of scenes that were told to it.
[[nodiscard]] std::vector<std::unique_ptr<RunListener>>
MakeTableListeners(const RunPlan& plan, const DetectionParameters& parameters);

} // namespace scenedetect
