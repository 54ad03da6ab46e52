// How many processors this process may use.
#pragma once

#include <optional>
#include <string>

namespace scenedetect {

/// At least 1: those that the calling thread may run on, or fewer where control groups of the process limit
/// its time, as batch systems and containers set them. Any thread.
[[nodiscard]] int UsableCores();

/// As many as the control groups' limit of time (v2: cpu.max, v1: cpu.cfs_quota_us) keeps busy, parts of one
/// counting as a whole; nothing when they set none. `root` stands before the names of all files. Raises
/// std::bad_alloc. Not on Windows.
[[nodiscard]] std::optional<int> CoresOfControlGroups(const std::string& root = "");

} // namespace scenedetect
