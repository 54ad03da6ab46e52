// What bash needs to complete a command line of kxscenes.
#pragma once

#include "hosts/cli/CommonOptions.h"

#include <string>

namespace scenedetect {

/// A script to be sourced, which needs nothing but bash: names of options; the choices of those that have
/// some, after a comma again where they take a list; names of files and folders where they are wanted.
[[nodiscard]] std::string CompletionScript(const HostProgram& program);

} // namespace scenedetect
