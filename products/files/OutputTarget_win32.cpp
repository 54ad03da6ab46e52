#include "platform/FilePath_win32.h"
#include "products/files/SystemFile.h"
#include "reading/base/HostError.h"

#include <windows.h>

#include <algorithm>
#include <array>
#include <string_view>
#include <utility>

namespace scenedetect {
namespace {

// Named pipes, and names that are devices in every folder.
bool IsDevice(const std::filesystem::path& file) {
    constexpr std::array<std::wstring_view, 4> kNames = {L"NUL", L"CON", L"PRN", L"AUX"};
    std::wstring name = file.filename().native();
    CharUpperBuffW(name.data(), static_cast<DWORD>(name.size()));
    return file.native().starts_with(L"\\\\.\\") || std::ranges::count(kNames, name) != 0;
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
    const DWORD attributes = GetFileAttributesW(SystemPath(file.native()).c_str());
    if (attributes == INVALID_FILE_ATTRIBUTES)
        return {OutputTarget::Kind::File, -1, std::move(file)};
    if ((attributes & FILE_ATTRIBUTE_DIRECTORY) != 0)
        throw HostError(path + ": cannot be written: it is a folder");
    if (existing == Existing::Keep)
        FailToWrite(path, ERROR_FILE_EXISTS);
    if ((attributes & FILE_ATTRIBUTE_READONLY) != 0)
        FailToWrite(path, ERROR_ACCESS_DENIED);
    return {OutputTarget::Kind::File, -1, std::move(file)};
}

} // namespace scenedetect
