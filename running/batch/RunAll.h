// All runs of a command line, some at a time.
#pragma once

#include "reading/base/Console.h"
#include "running/batch/RunPlan.h"

#include <atomic>
#include <vector>

namespace scenedetect {

/// Runs the plans on up to `jobs` threads and shows their progress; tells of each that fails, and, where
/// there are several, how they ended. `claims` has what the plans have claimed. Setting `stop` ends all of
/// them at their next picture. Whether none has failed.
[[nodiscard]] bool RunAll(const std::vector<RunPlan>& plans, int jobs, OutputClaims& claims,
                          std::atomic<bool>& stop, Console& console);

} // namespace scenedetect
