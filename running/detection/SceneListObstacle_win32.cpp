#include "platform/FilePath_win32.h"
#include "platform/SystemError.h"
#include "platform/Text.h"
#include "reading/base/FileFacts.h"
#include "reading/base/FilePath.h"
#include "running/detection/SceneListCheck.h"

#include <windows.h>

#include <cerrno>
#include <system_error>

namespace scenedetect {

std::string FindSceneListObstacle(const std::string& path) {
    const FileFacts facts = FactsOf(path);
    if (facts.isFolder)
        return std::generic_category().message(EISDIR);
    if (!facts.isThere) {
        const std::string folder = NameOfPath(FilePath(path).parent_path());
        return folder.empty() || FactsOf(folder).isFolder ? "" : std::generic_category().message(ENOENT);
    }
    // Opened and closed again an existing file stays as it is.
    const HANDLE handle =
        CreateFileW(SystemPath(WideFromUtf8(path)).c_str(), GENERIC_WRITE, FILE_SHARE_READ | FILE_SHARE_WRITE,
                    nullptr, OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr);
    if (handle == INVALID_HANDLE_VALUE)
        return LastSystemErrorClause();
    CloseHandle(handle);
    return "";
}

} // namespace scenedetect
