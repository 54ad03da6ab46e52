#include "hosts/kxscenes/SceneListCheck.h"

#include "hosts/kxscenes/HostError.h"
#include "platform/Text.h"

#include <cerrno>
#include <filesystem>
#include <fstream>
#include <system_error>
#include <unistd.h>

namespace scenedetect {
namespace {

std::string ErrnoText() {
    return std::generic_category().message(errno);
}

bool IsWhole(std::istream& file, std::int64_t sceneCount) {
    std::string line;
    const std::string opening = "<SceneList count=\"" + std::to_string(sceneCount) + "\"";
    if (!std::getline(file, line) || !line.starts_with(opening))
        return false;
    std::int64_t scenes = 0;
    while (std::getline(file, line) && line.starts_with("<Scene pos=\"") && line.ends_with("\"/>\r"))
        ++scenes;
    return scenes == sceneCount && line == "</SceneList>\r" && !file.eof();
}

} // namespace

void RequireSceneListName(const std::string& path, const std::string& input) {
    std::error_code none;
    if (std::filesystem::equivalent(path, input, none))
        throw HostError(path + ": is the input, the scene list would overwrite it");
    if (Utf8FromWide(WideFromUtf8(path)) != path)
        throw HostError(path + ": the scene list cannot be written: the name is not UTF-8");
}

std::string FindSceneListObstacle(const std::string& path) {
    std::error_code none;
    if (std::filesystem::is_directory(path, none))
        return std::generic_category().message(EISDIR);
    if (std::filesystem::exists(path, none))
        return access(path.c_str(), W_OK) == 0 ? "" : ErrnoText();
    const std::filesystem::path folder = std::filesystem::path(path).parent_path();
    return access(folder.empty() ? "." : folder.c_str(), W_OK | X_OK) == 0 ? "" : ErrnoText();
}

void CheckSceneList(const std::string& path, std::int64_t sceneCount) {
    // Reading back from a device would tell nothing, or never end.
    std::error_code none;
    std::ifstream file;
    if (std::filesystem::is_regular_file(path, none))
        file.open(path, std::ios::binary);
    if (!file.is_open() || !IsWhole(file, sceneCount))
        throw HostError(path + ": the scene list could not be written whole (is there room?)");
}

} // namespace scenedetect
