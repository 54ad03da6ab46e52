#include "running/detection/SceneListCheck.h"

#include <cerrno>
#include <filesystem>
#include <system_error>
#include <unistd.h>

namespace scenedetect {
namespace {

std::string ErrnoText() {
    return std::generic_category().message(errno);
}

} // namespace

std::string FindSceneListObstacle(const std::string& path) {
    std::error_code none;
    if (std::filesystem::is_directory(path, none))
        return std::generic_category().message(EISDIR);
    if (std::filesystem::exists(path, none))
        return access(path.c_str(), W_OK) == 0 ? "" : ErrnoText();
    const std::filesystem::path folder = std::filesystem::path(path).parent_path();
    return access(folder.empty() ? "." : folder.c_str(), W_OK | X_OK) == 0 ? "" : ErrnoText();
}

} // namespace scenedetect
