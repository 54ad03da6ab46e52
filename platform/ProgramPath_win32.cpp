#include "platform/ProgramPath.h"

#include <windows.h>

namespace scenedetect {

std::wstring ProgramPath() {
    std::wstring path(UNICODE_STRING_MAX_CHARS, L'\0');
    path.resize(GetModuleFileNameW(nullptr, path.data(), static_cast<DWORD>(path.size())));
    return path;
}

} // namespace scenedetect
