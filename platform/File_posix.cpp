#include "platform/File.h"

#include "platform/Text.h"

#include <cerrno>
#include <fcntl.h>
#include <unistd.h>

namespace scenedetect {
namespace {

// Moves `bytes` bytes by `transfer` (read or write), which may do it in pieces. Returns how many it moved.
template <typename Byte, typename Transfer>
std::size_t TransferAll(std::intptr_t handle, Byte* data, std::size_t bytes, Transfer transfer) {
    std::size_t done = 0;
    while (done < bytes) {
        const ssize_t moved = transfer(static_cast<int>(handle), data + done, bytes - done);
        if (moved < 0 && errno == EINTR)
            continue;
        if (moved <= 0)
            break;
        done += static_cast<std::size_t>(moved);
    }
    return done;
}

} // namespace

File::~File() {
    Close();
}

bool File::Open(const std::wstring& path, Mode mode) {
    Close();
    const int flags = mode == Mode::Read ? O_RDONLY : O_WRONLY | O_CREAT | O_TRUNC;
    m_handle = open(Utf8FromWide(path).c_str(), flags | O_CLOEXEC, 0666);
    return IsOpen();
}

bool File::IsOpen() const {
    return m_handle != -1;
}

std::size_t File::Read(void* data, std::size_t bytes) {
    return TransferAll(m_handle, static_cast<char*>(data), bytes, read);
}

bool File::Write(const void* data, std::size_t bytes) {
    return TransferAll(m_handle, static_cast<const char*>(data), bytes, write) == bytes;
}

bool File::SeekForward(std::int64_t offset) {
    return lseek(static_cast<int>(m_handle), offset, SEEK_CUR) != -1;
}

bool File::Close() {
    if (!IsOpen())
        return true;
    const int result = close(static_cast<int>(m_handle));
    m_handle = -1;
    // An interrupted close has closed the file all the same.
    return result == 0 || errno == EINTR;
}

} // namespace scenedetect
