#include "platform/SystemError.h"
#include "platform/Text.h"
#include "reading/base/FilePath.h"
#include "running/detection/SceneListCheck.h"

#include <windows.h>

#include <cerrno>
#include <system_error>

namespace scenedetect {

std::string FindSceneListObstacle(const std::string& path) {
    const std::filesystem::path file = FilePath(path);
    std::error_code none;
    if (std::filesystem::is_directory(file, none))
        return std::generic_category().message(EISDIR);
    if (!std::filesystem::exists(file, none)) {
        const std::filesystem::path folder = file.parent_path();
        const bool isFolderThere = folder.empty() || std::filesystem::is_directory(folder, none);
        return isFolderThere ? "" : std::generic_category().message(ENOENT);
    }
    // Opened and closed again an existing file stays as it is.
    const HANDLE handle = CreateFileW(file.c_str(), GENERIC_WRITE, FILE_SHARE_READ | FILE_SHARE_WRITE,
                                      nullptr, OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr);
    if (handle == INVALID_HANDLE_VALUE)
        return Utf8FromWide(LastSystemErrorText());
    CloseHandle(handle);
    return "";
}

} // namespace scenedetect
