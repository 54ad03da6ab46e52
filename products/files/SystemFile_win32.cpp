#include "platform/FilePath_win32.h"
#include "platform/SystemError.h"
#include "platform/Text.h"
#include "products/files/SystemFile.h"
#include "reading/base/FileFacts.h"

#include <windows.h>

#include <algorithm>
#include <string_view>
#include <utility>

namespace scenedetect {
namespace {

constexpr std::size_t kMostAtOnce = std::size_t{1} << 30;

HANDLE AsHandle(std::intptr_t handle) {
    return reinterpret_cast<HANDLE>(handle);
}

int ErrorOf(bool isGood) {
    return isGood ? 0 : static_cast<int>(GetLastError());
}

std::wstring Native(std::filesystem::path path) {
    return SystemPath(path.make_preferred().native());
}

HANDLE Open(const std::filesystem::path& path, DWORD access, DWORD creation, DWORD flags) {
    // Others may remove it, so that nothing is left when the program ends before its time.
    return CreateFileW(Native(path).c_str(), access, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE,
                       nullptr, creation, flags, nullptr);
}

// 0 when it is there in the end.
int MakeFolder(const std::filesystem::path& folder) {
    if (CreateDirectoryW(Native(folder).c_str(), nullptr))
        return 0;
    const int error = ErrorOf(false);
    const FileFacts facts = FactsOf(NameOfPath(folder));
    return facts.isFolder ? 0 : facts.isThere ? NoFolderError() : error;
}

std::string_view Advice(int code) {
    switch (code) {
    case ERROR_DISK_FULL:
    case ERROR_HANDLE_DISK_FULL:
        return "; make room there, or choose another folder";
    case ERROR_FILE_TOO_LARGE:
        return "; the system or its file system allows no larger files there";
    case ERROR_SHARING_VIOLATION:
        return "; a program has it open: close it there";
    case ERROR_ACCESS_DENIED:
        return "; it or its folder is write-protected, or a program has it open";
    default:
        return "";
    }
}

} // namespace

int SystemFile::OpenDescriptor(int descriptor) {
    HANDLE copy = INVALID_HANDLE_VALUE;
    const DWORD stream = descriptor == kStandardError ? STD_ERROR_HANDLE : STD_OUTPUT_HANDLE;
    const bool isGood = DuplicateHandle(GetCurrentProcess(), GetStdHandle(stream), GetCurrentProcess(), &copy,
                                        0, FALSE, DUPLICATE_SAME_ACCESS) != 0;
    m_handle = reinterpret_cast<std::intptr_t>(copy);
    return ErrorOf(isGood);
}

int SystemFile::OpenDevice(const std::filesystem::path& path) {
    m_handle = reinterpret_cast<std::intptr_t>(Open(path, GENERIC_WRITE, OPEN_EXISTING, 0));
    return ErrorOf(m_handle != -1);
}

int SystemFile::Create(const std::filesystem::path& path) {
    m_handle = reinterpret_cast<std::intptr_t>(
        Open(path, GENERIC_READ | GENERIC_WRITE, CREATE_NEW, FILE_ATTRIBUTE_HIDDEN));
    return ErrorOf(m_handle != -1);
}

int SystemFile::Write(std::span<const std::uint8_t> bytes) {
    while (!bytes.empty()) {
        DWORD sent = 0;
        if (!::WriteFile(AsHandle(m_handle), bytes.data(),
                         static_cast<DWORD>(std::min(bytes.size(), kMostAtOnce)), &sent, nullptr))
            return ErrorOf(false);
        if (sent == 0)
            return ERROR_DISK_FULL;
        bytes = bytes.subspan(sent);
    }
    return 0;
}

int SystemFile::ReadAt(std::int64_t offset, std::span<std::uint8_t> target, std::size_t& got) {
    for (got = 0; got < target.size();) {
        const std::int64_t from = offset + static_cast<std::int64_t>(got);
        OVERLAPPED place{};
        place.Offset = static_cast<DWORD>(from);
        place.OffsetHigh = static_cast<DWORD>(from >> 32);
        DWORD count = 0;
        if (!ReadFile(AsHandle(m_handle), target.data() + got,
                      static_cast<DWORD>(std::min(target.size() - got, kMostAtOnce)), &count, &place) &&
            GetLastError() != ERROR_HANDLE_EOF)
            return ErrorOf(false);
        if (count == 0)
            break;
        got += count;
    }
    return 0;
}

int SystemFile::CutAt(std::int64_t offset) {
    LARGE_INTEGER place{};
    place.QuadPart = offset;
    return ErrorOf(SetFilePointerEx(AsHandle(m_handle), place, nullptr, FILE_BEGIN) &&
                   SetEndOfFile(AsHandle(m_handle)));
}

int SystemFile::Close() {
    const std::intptr_t handle = std::exchange(m_handle, -1);
    return ErrorOf(handle == -1 || CloseHandle(AsHandle(handle)));
}

std::string SystemFile::DescriptorPath() const {
    return "";
}

std::string WriteErrorText(int code) {
    SetLastError(static_cast<DWORD>(code));
    return LastSystemErrorClause() + std::string(Advice(code));
}

bool IsExistingError(int code) {
    return code == ERROR_FILE_EXISTS || code == ERROR_ALREADY_EXISTS;
}

int GiveFinalName(const std::filesystem::path& from, const std::filesystem::path& to, Existing existing,
                  bool& isMoved) {
    const std::wstring name = Native(from);
    isMoved = SetFileAttributesW(name.c_str(), FILE_ATTRIBUTE_NORMAL) &&
              MoveFileExW(name.c_str(), Native(to).c_str(),
                          existing == Existing::Replace ? MOVEFILE_REPLACE_EXISTING : 0);
    return ErrorOf(isMoved);
}

void RemoveFile(const char* path) noexcept {
    try {
        DeleteFileW(SystemPath(WideFromUtf8(path)).c_str());
    } catch (const std::bad_alloc&) {
        // It stays.
    }
}

int MakeFolders(const std::filesystem::path& folder) {
    const int error = MakeFolder(folder);
    if (error != ERROR_PATH_NOT_FOUND || !folder.has_relative_path() || folder.parent_path().empty())
        return error;
    const int above = MakeFolders(folder.parent_path());
    return above != 0 ? above : MakeFolder(folder);
}

// Rights are too many to be asked for; trying tells.
int FolderObstacle(const std::filesystem::path& folder) {
    const HANDLE file = Open(folder / (".kxscenes-" + std::to_string(GetCurrentProcessId()) + ".part"),
                             GENERIC_WRITE, CREATE_ALWAYS, FILE_ATTRIBUTE_HIDDEN | FILE_FLAG_DELETE_ON_CLOSE);
    if (file == INVALID_HANDLE_VALUE)
        return ErrorOf(false);
    CloseHandle(file);
    return 0;
}

int NoFolderError() {
    return ERROR_DIRECTORY;
}

std::string WholeName(const std::filesystem::path& path) {
    std::wstring whole = FullPath(path.native());
    // Names that differ in the case of letters only are one.
    CharUpperBuffW(whole.data(), static_cast<DWORD>(whole.size()));
    return Utf8FromWide(whole);
}

} // namespace scenedetect
