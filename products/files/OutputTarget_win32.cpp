#include "platform/FilePath_win32.h"
#include "products/files/SystemFile.h"
#include "reading/base/FileFacts.h"
#include "reading/base/HostError.h"

#include <windows.h>

#include <algorithm>
#include <array>
#include <string_view>
#include <utility>

namespace scenedetect {
namespace {

bool IsDeviceName(std::wstring name) {
    constexpr std::array<std::wstring_view, 4> kNames = {L"NUL", L"CON", L"PRN", L"AUX"};
    CharUpperBuffW(name.data(), static_cast<DWORD>(name.size()));
    return std::ranges::count(kNames, name) != 0;
}

// Named pipes, and names that are devices in every folder.
bool IsDevice(const std::filesystem::path& file) {
    return file.native().starts_with(L"\\\\.\\") || IsDeviceName(file.filename().native());
}

// Some would be a stream within another file, or a file of another name.
bool IsForbidden(const std::wstring& name) {
    const std::wstring stem = name.substr(0, name.find_first_of(L". "));
    const bool isPort = stem.size() == 4 && stem.back() >= L'1' && stem.back() <= L'9' &&
                        (_wcsnicmp(stem.c_str(), L"COM", 3) == 0 || _wcsnicmp(stem.c_str(), L"LPT", 3) == 0);
    return name.find_first_of(L"<>:\"|?*") != std::wstring::npos || name.ends_with(L'.') ||
           name.ends_with(L' ') || isPort || IsDeviceName(stem);
}

// What is there, through links.
HANDLE OpenThere(const std::filesystem::path& path, DWORD access) {
    return CreateFileW(SystemPath(path.native()).c_str(), access,
                       FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr, OPEN_EXISTING,
                       FILE_FLAG_BACKUP_SEMANTICS, nullptr);
}

// Where it lies; nothing where the file system can't tell. Closes it.
std::filesystem::path PlaceOf(HANDLE opened) {
    std::wstring place(GetFinalPathNameByHandleW(opened, nullptr, 0, 0), L'\0');
    place.resize(GetFinalPathNameByHandleW(opened, place.data(), static_cast<DWORD>(place.size()), 0));
    CloseHandle(opened);
    return place;
}

} // namespace

OutputTarget FindNamedTarget(const std::string& path, Existing existing) {
    if (path == "-")
        return {OutputTarget::Kind::Descriptor, kStandardOutput, {}};
    std::filesystem::path file = FilePath(path).make_preferred();
    if (IsDevice(file))
        return {OutputTarget::Kind::Device, -1, std::move(file)};
    if (!file.has_filename())
        FailToWrite(path, ERROR_INVALID_NAME);
    if (IsForbidden(file.filename().native()))
        throw HostError(path +
                        ": cannot be written: Windows has no such names: none with any of < > : \" | ? *, "
                        "with a dot or space at the end, or of a device (CON, COM1 ...)");
    const DWORD attributes = GetFileAttributesW(SystemPath(file.native()).c_str());
    if (attributes == INVALID_FILE_ATTRIBUTES)
        return {OutputTarget::Kind::File, -1, std::move(file)};
    if ((attributes & FILE_ATTRIBUTE_DIRECTORY) != 0)
        throw HostError(path + ": cannot be written: it is a folder");
    if (existing == Existing::Keep)
        FailToWrite(path, ERROR_FILE_EXISTS);
    if ((attributes & FILE_ATTRIBUTE_READONLY) != 0)
        FailToWrite(path, ERROR_ACCESS_DENIED);
    // It is to be replaced in the end, which is refused while others have it open.
    const HANDLE opened = OpenThere(file, DELETE);
    if (opened == INVALID_HANDLE_VALUE)
        FailToWrite(path, static_cast<int>(GetLastError()));
    std::filesystem::path place = PlaceOf(opened);
    const auto folder = PlaceOf(OpenThere(WholePath(path).parent_path(), 0));
    const bool isLink = !place.empty() && place != folder / file.filename();
    return {OutputTarget::Kind::File, -1, std::move(isLink ? place : file)};
}

} // namespace scenedetect
