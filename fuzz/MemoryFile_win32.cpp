#include "fuzz/MemoryFile.h"

#include "fuzz/Input.h"
#include "platform/File.h"

#include <windows.h>

namespace scenedetect::fuzz {

MemoryFile::MemoryFile(const std::uint8_t* data, std::size_t size) {
    wchar_t folder[MAX_PATH + 1];
    wchar_t path[MAX_PATH + 1];
    Require(GetTempPathW(MAX_PATH + 1, folder) != 0 && GetTempFileNameW(folder, L"fuz", 0, path) != 0);
    m_path = path;
    File file;
    Require(file.Open(m_path, File::Mode::Write) && file.Write(data, size));
}

MemoryFile::~MemoryFile() {
    DeleteFileW(m_path.c_str());
}

} // namespace scenedetect::fuzz
