// The progress line of a run.
#pragma once

#include <chrono>
#include <cstdint>
#include <string>

namespace scenedetect {

/// "1500 frames  812 fps  45%  0:12 left" ("1:02:03 left" from an hour on); without a known fraction
/// (negative) the last two are missing.
[[nodiscard]] std::string ProgressText(std::int64_t frames, double fraction,
                                       std::chrono::duration<double> elapsed);

/// "1500 frames  3 of 12 clips"
[[nodiscard]] std::string ProductsText(std::int64_t frames, std::int64_t made, std::int64_t wanted,
                                       const char* products);

} // namespace scenedetect
