// The program's standard streams: what differs from system to system.
#pragma once

#include <cstddef>
#include <string_view>

namespace scenedetect {

/// Whether standard error is a terminal that obeys control sequences.
[[nodiscard]] bool IsErrorTerminal();
/// How many characters fit on a line of that terminal, 2 or more.
[[nodiscard]] std::size_t ErrorColumns();

/// Writes all of it to standard output, byte for byte. HostError when that fails, OutputClosed when nobody
/// reads it any more.
void WriteOutput(std::string_view text);

} // namespace scenedetect
