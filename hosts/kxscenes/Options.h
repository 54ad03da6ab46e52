// The command line of kxscenes.
#pragma once

#include "hosts/kxscenes/Requests.h"
#include "hosts/shared/CommonOptions.h"

#include <string>

namespace scenedetect {

/// What the program asks for beside the options that all hosts have; checked like those.
struct KxOptions {
    int jobs = 1; ///< inputs that are read at the same time
    Requests requests;
    bool isQuiet = false;
    bool isVerbose = false;
    std::string configPath; ///< empty: the one in the user's folder, if any
    bool ignoresConfig = false;
};

/// The program, with options that land in `own`, which must outlive it.
[[nodiscard]] HostProgram KxProgram(KxOptions& own);

[[nodiscard]] CommandLine ParseCommandLine(int argc, const char* const* argv, KxOptions& own);

} // namespace scenedetect
