// The command line of kxscenes.
#pragma once

#include "hosts/cli/CommonOptions.h"
#include "running/batch/RunPlan.h"

#include <optional>
#include <string>

namespace scenedetect {

/// All that the program is asked, checked for sense.
struct KxOptions {
    BatchSettings batch;
    bool findsScenes = true; ///< by the methods; not only what the tape tells
    bool isQuiet = false;
    bool isVerbose = false;
    bool ignoresConfig = false;
};

/// The program, with options that land in `options`, which must outlive it.
[[nodiscard]] HostProgram KxProgram(KxOptions& options);
/// Nothing when the program is to run.
[[nodiscard]] std::optional<EarlyEnd> ParseCommandLine(int argc, const char* const* argv, KxOptions& options);

} // namespace scenedetect
