// A text as one field of a CSV line, after RFC 4180.
#pragma once

#include <string>
#include <string_view>

namespace scenedetect {

/// In quotes where it must be.
[[nodiscard]] std::string CsvField(std::string_view text);

} // namespace scenedetect
