// Reads back the CSV table of a run's figures.
#pragma once

#include "products/stats/StatsFile.h"

#include <string>
#include <string_view>

namespace scenedetect {

/// The table in `text`. Whatever is not as the writer makes it is refused, with the number of the line in the
/// HostError; `path` is for its text. Line ends of spreadsheet programs and settings that are not known (they
/// become notes) are taken.
[[nodiscard]] Stats ParseStats(std::string_view text, const std::string& path);

/// The table in a file. HostError when that can't be read, too.
[[nodiscard]] Stats ReadStats(const std::string& path);

} // namespace scenedetect
