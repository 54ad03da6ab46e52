#include "platform/FilePath_win32.h"
#include "platform/SystemError.h"
#include "platform/Text.h"
#include "reading/base/FileFacts.h"
#include "reading/base/FilePath.h"

#include <windows.h>

#include <algorithm>

namespace scenedetect {
namespace {

constexpr DWORD kShareAll = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;

std::uint64_t Joined(DWORD high, DWORD low) {
    return std::uint64_t{high} << 32 | low;
}

// A link to a folder, or a junction; files that a service keeps elsewhere have marks, too, and are none.
bool IsLink(const WIN32_FIND_DATAW& found) {
    return (found.dwFileAttributes & FILE_ATTRIBUTE_REPARSE_POINT) != 0 &&
           IsReparseTagNameSurrogate(found.dwReserved0);
}

// The system itself knows what * and ? in the last part of a path stand for.
std::string Find(const std::filesystem::path& pattern, std::vector<FolderEntry>& entries) {
    WIN32_FIND_DATAW found{};
    const HANDLE search = FindFirstFileW(SystemPath(pattern.native()).c_str(), &found);
    BOOL isThere = search != INVALID_HANDLE_VALUE;
    for (; isThere; isThere = FindNextFileW(search, &found)) {
        const std::filesystem::path name = found.cFileName;
        const bool isFolder = (found.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) != 0 && !IsLink(found);
        if (name != L"." && name != L"..")
            entries.push_back({NameOfPath(name), isFolder});
    }
    const DWORD end = GetLastError();
    if (search != INVALID_HANDLE_VALUE)
        FindClose(search);
    SetLastError(end);
    return end == ERROR_NO_MORE_FILES || end == ERROR_FILE_NOT_FOUND ? "" : LastSystemErrorClause();
}

} // namespace

FileFacts FactsOf(const std::string& path) {
    // Asks for no right, so that files that others hold open are known, too. The flag lets folders be opened.
    const HANDLE file = CreateFileW(SystemPath(WideFromUtf8(path)).c_str(), 0, kShareAll, nullptr,
                                    OPEN_EXISTING, FILE_FLAG_BACKUP_SEMANTICS, nullptr);
    if (file == INVALID_HANDLE_VALUE)
        return {};
    BY_HANDLE_FILE_INFORMATION facts{};
    const bool isKnown = GetFileType(file) == FILE_TYPE_DISK && GetFileInformationByHandle(file, &facts) != 0;
    CloseHandle(file);
    const bool isFolder = (facts.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
    if (!isKnown || isFolder)
        return {.isThere = true, .isFolder = isFolder};
    return {true,
            false,
            true,
            static_cast<std::int64_t>(Joined(facts.nFileSizeHigh, facts.nFileSizeLow)),
            {facts.dwVolumeSerialNumber, Joined(facts.nFileIndexHigh, facts.nFileIndexLow)}};
}

std::filesystem::path WholePath(const std::string& path) {
    return FullPath(WideFromUtf8(path));
}

std::string ListFolder(const std::string& folder, std::vector<FolderEntry>& entries) {
    return Find(FilePath(folder) / "*", entries);
}

std::vector<std::string> NamesLike(const std::string& argument) {
    const std::filesystem::path pattern = FilePath(argument);
    if (pattern.filename().native().find_first_of(L"*?") == std::wstring::npos)
        return {argument};
    std::vector<FolderEntry> entries;
    (void)Find(pattern, entries); // none, whatever the reason
    std::vector<std::string> names;
    for (const FolderEntry& each : entries)
        if (!each.name.starts_with('.')) // unfinished files of other programs
            names.push_back(NameOfPath(pattern.parent_path() / FilePath(each.name)));
    std::ranges::sort(names);
    return names;
}

} // namespace scenedetect
