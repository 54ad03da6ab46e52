// A run without its input: scenes found again from figures that an earlier run has saved.
#pragma once

#include "reading/base/Console.h"
#include "running/batch/RunPlan.h"

namespace scenedetect {

/// Prints the scenes and writes lists and report. HostError when the figures can't be read or used, or an
/// output not be written.
void DecideFromStats(const BatchSettings& settings, OutputClaims& claims, Console& console);

} // namespace scenedetect
