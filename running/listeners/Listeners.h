// Makes the listeners of a run that give the outputs asked for.
#pragma once

#include "products/files/OutputClaims.h"
#include "reading/base/Console.h"
#include "running/listeners/OutputSettings.h"
#include "running/run/RunListener.h"
#include "running/run/RunProgress.h"
#include "running/run/RunSettings.h"

#include <memory>
#include <vector>

namespace scenedetect {

/// All that write files, and show what they make when the frames have passed; what is given must outlive
/// them.
[[nodiscard]] std::vector<std::unique_ptr<RunListener>> MakeListeners(const RunSettings& run,
                                                                      const OutputSettings& outputs,
                                                                      OutputClaims& claims, Console& console,
                                                                      RunProgress& progress);

/// The lists and the report, of scenes judged by `parameters`; `canReadAgain` when pictures can be fetched
/// from the input.
[[nodiscard]] std::vector<std::unique_ptr<RunListener>>
MakeTableListeners(const RunSettings& run, const OutputSettings& outputs,
                   const DetectionParameters& parameters, bool canReadAgain);

} // namespace scenedetect
