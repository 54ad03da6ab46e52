// The file that the current process was started from.
#pragma once

#include <string>

namespace scenedetect {

/// Its full path; empty when the system does not tell.
[[nodiscard]] std::wstring ProgramPath();

} // namespace scenedetect
