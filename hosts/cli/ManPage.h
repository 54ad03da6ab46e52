// The manual page: its hand-written template, and in it the options as they stand in the option table.
#pragma once

#include "hosts/cli/CommonOptions.h"

#include <string>

namespace scenedetect {

/// `page` in roff (man macros) with its line "@OPTIONS@" replaced by the options of the program, and
/// "@VERSION@" by `version`. HostError when there is no such line.
[[nodiscard]] std::string FillManPage(std::string page, const HostProgram& program,
                                      const std::string& version);

} // namespace scenedetect
