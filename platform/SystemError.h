// The system's message for the calling thread's last error.
#pragma once

#include <string>

namespace scenedetect {

/// The message for the thread's last error (GetLastError, errno), in the language the system chooses and
/// without a final line end; empty when the system knows none. Raises std::bad_alloc.
[[nodiscard]] std::wstring LastSystemErrorText();
/// The same as UTF-8 and without a full stop, to be put into a longer message.
[[nodiscard]] std::string LastSystemErrorClause();

} // namespace scenedetect
