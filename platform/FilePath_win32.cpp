#include "platform/FilePath_win32.h"

#include <windows.h>

#include <string_view>

namespace scenedetect {
namespace {

constexpr std::size_t kShort = MAX_PATH - 12; // of a folder, in which a file of an old kind has room
constexpr std::wstring_view kMark = L"\\\\?\\";
constexpr std::wstring_view kMarkOfShares = L"\\\\?\\UNC";

} // namespace

std::wstring FullPath(const std::wstring& path) {
    std::wstring whole(GetFullPathNameW(path.c_str(), 0, nullptr, nullptr), L'\0');
    whole.resize(GetFullPathNameW(path.c_str(), static_cast<DWORD>(whole.size()), whole.data(), nullptr));
    return whole;
}

std::wstring SystemPath(const std::wstring& path) {
    const std::wstring whole = path.starts_with(kMark) ? path : FullPath(path);
    if (whole.size() < kShort)
        return path;
    if (whole.starts_with(kMark))
        return whole;
    const bool isShare = whole.starts_with(L"\\\\");
    std::wstring marked(isShare ? kMarkOfShares : kMark);
    return marked.append(whole, isShare ? 1 : 0);
}

} // namespace scenedetect
