// The scene-list file seen from the host: the filter writes it, and tells nobody whether it could.
#pragma once

#include <cstdint>
#include <string>

namespace scenedetect {

/// HostError when the filter can't or must not be given this path: it is the input, or not UTF-8.
void RequireSceneListName(const std::string& path, const std::string& input);

/// Why a file can't be written at `path`, as far as that shows beforehand; empty when nothing speaks against
/// it. Changes nothing.
[[nodiscard]] std::string FindSceneListObstacle(const std::string& path);

/// Reads the file back. HostError unless it announces `sceneCount` scenes, holds as many and is closed.
[[nodiscard]] std::string ReadSceneList(const std::string& path, std::int64_t sceneCount);

} // namespace scenedetect
