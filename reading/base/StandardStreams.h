// The program's standard streams: what differs from system to system.
#pragma once

#include <cstddef>
#include <string_view>

namespace scenedetect {

/// Whether standard error is a terminal that obeys control sequences.
[[nodiscard]] bool IsErrorTerminal();
/// How many characters fit on a line of that terminal, 2 or more.
[[nodiscard]] std::size_t ErrorColumns();

/// Writes all of it to standard error, at once, so that lines of two programs on one pipe do not mix. Failing
/// is nobody's concern.
void WriteError(std::string_view text) noexcept;

/// Writes all of it to standard output, byte for byte; a console shows it as the UTF-8 that it is. HostError
/// when that fails, OutputClosed when nobody reads it any more.
void WriteOutput(std::string_view text);
/// Whether the system's number of an error (errno, or on Windows GetLastError) stands for a reader that has
/// gone away.
[[nodiscard]] bool IsClosedPipeError(int code);

} // namespace scenedetect
