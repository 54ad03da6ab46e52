#include "platform/FilePath_win32.h"
#include "platform/SystemError.h"
#include "platform/Text.h"
#include "reading/base/FileFacts.h"
#include "reading/base/HostError.h"
#include "reading/readers/ByteSource.h"

#include <windows.h>

#include <algorithm>

namespace scenedetect {
namespace {

constexpr const char* kStandardInput = "-";
constexpr DWORD kMilliseconds = 50; // between looks at a pipe

HANDLE AsHandle(std::intptr_t handle) {
    return reinterpret_cast<HANDLE>(handle);
}

HANDLE Open(const std::string& path) {
    if (path == kStandardInput) {
        HANDLE copy = INVALID_HANDLE_VALUE;
        DuplicateHandle(GetCurrentProcess(), GetStdHandle(STD_INPUT_HANDLE), GetCurrentProcess(), &copy, 0,
                        FALSE, DUPLICATE_SAME_ACCESS);
        return copy;
    }
    return CreateFileW(SystemPath(WideFromUtf8(path)).c_str(), GENERIC_READ,
                       FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr, OPEN_EXISTING,
                       FILE_FLAG_SEQUENTIAL_SCAN, nullptr);
}

// The end of a pipe is an error to the system.
bool IsEnd(DWORD error) {
    return error == ERROR_HANDLE_EOF || error == ERROR_BROKEN_PIPE;
}

} // namespace

ByteSource::ByteSource(const std::string& path)
    : m_name(path == kStandardInput ? "standard input" : path),
      m_handle(reinterpret_cast<std::intptr_t>(Open(path))) {
    if (AsHandle(m_handle) == INVALID_HANDLE_VALUE) {
        const DWORD error = GetLastError();
        if (FactsOf(path).isFolder)
            throw HostError(m_name + ": cannot be read: it is a folder");
        SetLastError(error);
        Fail();
    }
    LARGE_INTEGER size{};
    if (GetFileType(AsHandle(m_handle)) != FILE_TYPE_DISK || !GetFileSizeEx(AsHandle(m_handle), &size))
        return;
    LARGE_INTEGER position{};
    if (SetFilePointerEx(AsHandle(m_handle), {}, &position, FILE_CURRENT))
        m_origin = position.QuadPart;
    m_size = std::max<std::int64_t>(size.QuadPart - m_origin, 0);
}

ByteSource::~ByteSource() {
    CloseHandle(AsHandle(m_handle));
}

void ByteSource::Fail() const {
    throw HostError(m_name + ": cannot be read: " + LastSystemErrorClause());
}

bool ByteSource::Wait(const std::atomic<bool>& stop) const {
    const bool isPipe = GetFileType(AsHandle(m_handle)) == FILE_TYPE_PIPE;
    DWORD bytes = 0;
    while (!stop) {
        if (!isPipe || !PeekNamedPipe(AsHandle(m_handle), nullptr, 0, nullptr, &bytes, nullptr) || bytes != 0)
            return true;
        Sleep(kMilliseconds);
    }
    return IsFile();
}

std::size_t ByteSource::Read(std::span<std::uint8_t> target, bool& isEnd) {
    constexpr std::size_t kMostAtOnce = std::size_t{1} << 30;
    DWORD count = 0;
    if (!ReadFile(AsHandle(m_handle), target.data(), static_cast<DWORD>(std::min(target.size(), kMostAtOnce)),
                  &count, nullptr) &&
        !IsEnd(GetLastError()))
        Fail();
    isEnd = count == 0;
    return count;
}

std::size_t ByteSource::ReadAt(std::span<std::uint8_t> target, std::int64_t offset) const {
    constexpr std::size_t kMostAtOnce = std::size_t{1} << 30;
    const std::int64_t from = m_origin + offset;
    OVERLAPPED place{};
    place.Offset = static_cast<DWORD>(from);
    place.OffsetHigh = static_cast<DWORD>(from >> 32);
    DWORD count = 0;
    if (!ReadFile(AsHandle(m_handle), target.data(), static_cast<DWORD>(std::min(target.size(), kMostAtOnce)),
                  &count, &place) &&
        !IsEnd(GetLastError()))
        Fail();
    return count;
}

void ByteSource::GoTo(std::int64_t offset) {
    LARGE_INTEGER place{};
    place.QuadPart = m_origin + offset;
    if (!SetFilePointerEx(AsHandle(m_handle), place, nullptr, FILE_BEGIN))
        Fail();
}

} // namespace scenedetect
