#include "platform/SystemError.h"
#include "platform/Text.h"
#include "reading/base/HostError.h"
#include "running/run/MemoryFile.h"

#include <windows.h>

#include <array>

namespace scenedetect {

MemoryFile::MemoryFile() {
    std::array<wchar_t, MAX_PATH + 1> folder{};
    std::array<wchar_t, MAX_PATH + 1> path{};
    if (GetTempPathW(static_cast<DWORD>(folder.size()), folder.data()) == 0 ||
        GetTempFileNameW(folder.data(), L"kxs", 0, path.data()) == 0)
        throw HostError("no temporary file: " + LastSystemErrorClause());
    m_path = Utf8FromWide(path.data());
}

MemoryFile::~MemoryFile() {
    DeleteFileW(WideFromUtf8(m_path).c_str());
}

} // namespace scenedetect
