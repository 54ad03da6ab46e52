// All runs of a command line, some at a time.
#pragma once

#include "reading/base/Console.h"
#include "running/batch/RunPlan.h"

#include <atomic>
#include <vector>

namespace scenedetect {

/// How the runs of a command ended: the worst counts, which comes last here.
enum class BatchEnding {
    Complete,
    BrokeOff,     ///< an input ends early
    Stopped,      ///< by the user
    OutputClosed, ///< nobody reads the standard output any more, and nothing else was asked for
    Failed,
};

/// Runs the plans on up to `jobs` threads and shows their progress; tells of each that fails, and, where
/// there are several, how they ended. `claims` has what the plans have claimed. Setting `stop` ends all of
/// them at their next picture.
[[nodiscard]] BatchEnding RunAll(const std::vector<RunPlan>& plans, int jobs, OutputClaims& claims,
                                 std::atomic<bool>& stop, Console& console);

} // namespace scenedetect
