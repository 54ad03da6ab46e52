#include "platform/File.h"

#include "platform/FilePath_win32.h"

#include <windows.h>

#include <algorithm>

namespace scenedetect {
namespace {

HANDLE AsHandle(std::intptr_t handle) {
    return reinterpret_cast<HANDLE>(handle);
}

// Moves `bytes` bytes by `transfer` (ReadFile or WriteFile), whose counts are 32-bit. Returns how many.
template <typename Byte, typename Transfer>
std::size_t TransferAll(std::intptr_t handle, Byte* data, std::size_t bytes, Transfer transfer) {
    constexpr std::size_t kMostAtOnce = std::size_t{1} << 30;
    std::size_t done = 0;
    while (done < bytes) {
        const auto wanted = static_cast<DWORD>(std::min(bytes - done, kMostAtOnce));
        DWORD moved = 0;
        if (!transfer(AsHandle(handle), data + done, wanted, &moved, nullptr) || moved == 0)
            break;
        done += moved;
    }
    return done;
}

} // namespace

File::~File() {
    Close();
}

bool File::Open(const std::wstring& path, Mode mode) {
    Close();
    const bool reading = mode == Mode::Read;
    m_handle = reinterpret_cast<std::intptr_t>(CreateFileW(
        SystemPath(path).c_str(), reading ? GENERIC_READ : GENERIC_WRITE, FILE_SHARE_READ | FILE_SHARE_WRITE,
        nullptr, reading ? OPEN_EXISTING : CREATE_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr));
    return IsOpen();
}

bool File::IsOpen() const {
    return AsHandle(m_handle) != INVALID_HANDLE_VALUE;
}

std::size_t File::Read(void* data, std::size_t bytes) {
    return TransferAll(m_handle, static_cast<char*>(data), bytes, ReadFile);
}

bool File::Write(const void* data, std::size_t bytes) {
    return TransferAll(m_handle, static_cast<const char*>(data), bytes, WriteFile) == bytes;
}

bool File::SeekForward(std::int64_t offset) {
    LARGE_INTEGER distance;
    distance.QuadPart = offset;
    return SetFilePointerEx(AsHandle(m_handle), distance, nullptr, FILE_CURRENT) != 0;
}

bool File::Close() {
    if (!IsOpen())
        return true;
    const bool closed = CloseHandle(AsHandle(m_handle)) != 0;
    m_handle = -1;
    return closed;
}

} // namespace scenedetect
