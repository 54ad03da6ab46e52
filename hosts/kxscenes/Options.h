// The command line of kxscenes.
#pragma once

#include "hosts/shared/CommonOptions.h"

namespace scenedetect {

[[nodiscard]] CommandLine ParseCommandLine(int argc, const char* const* argv);

} // namespace scenedetect
