#include "reading/base/HostError.h"
#include "reading/readers/ByteSource.h"

#include <algorithm>
#include <cerrno>
#include <fcntl.h>
#include <poll.h>
#include <sys/stat.h>
#include <system_error>
#include <unistd.h>

namespace scenedetect {
namespace {

constexpr const char* kStandardInput = "-";

// Without waiting for whoever writes a named pipe: reading waits, and can be stopped.
int Open(const std::string& path) {
    return path == kStandardInput ? fcntl(STDIN_FILENO, F_DUPFD_CLOEXEC, 0)
                                  : open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK);
}

int Descriptor(std::intptr_t handle) {
    return static_cast<int>(handle);
}

} // namespace

ByteSource::ByteSource(const std::string& path)
    : m_name(path == kStandardInput ? "standard input" : path), m_handle(Open(path)) {
    struct stat status {};
    if (m_handle == -1 || fstat(Descriptor(m_handle), &status) != 0)
        Fail();
    if (!S_ISREG(status.st_mode))
        return;
    m_origin = std::max<std::int64_t>(lseek(Descriptor(m_handle), 0, SEEK_CUR), 0);
    m_size = std::max<std::int64_t>(status.st_size - m_origin, 0);
}

ByteSource::~ByteSource() {
    close(Descriptor(m_handle));
}

void ByteSource::Fail() const {
    const std::string why = errno == EINTR ? "stopped" : std::generic_category().message(errno);
    throw HostError(m_name + ": cannot be read: " + why);
}

// A signal may be taken by another thread, which then leaves a read of this one waiting.
bool ByteSource::Wait(const std::atomic<bool>& stop) const {
    constexpr int kMilliseconds = 50;
    if (IsFile())
        return true;
    pollfd waiting{Descriptor(m_handle), POLLIN, 0};
    while (!stop)
        if (poll(&waiting, 1, kMilliseconds) > 0)
            return true;
    return false;
}

std::size_t ByteSource::Read(std::span<std::uint8_t> target, bool& isEnd) {
    const ssize_t count = read(Descriptor(m_handle), target.data(), target.size());
    if (count < 0 && errno != EINTR && errno != EAGAIN)
        Fail();
    isEnd = count == 0;
    return static_cast<std::size_t>(std::max<ssize_t>(count, 0));
}

std::size_t ByteSource::ReadAt(std::span<std::uint8_t> target, std::int64_t offset) const {
    for (;;) {
        const ssize_t count =
            pread(Descriptor(m_handle), target.data(), target.size(), static_cast<off_t>(m_origin + offset));
        if (count >= 0)
            return static_cast<std::size_t>(count);
        if (errno != EINTR)
            Fail();
    }
}

void ByteSource::GoTo(std::int64_t offset) {
    if (lseek(Descriptor(m_handle), m_origin + offset, SEEK_SET) == -1)
        Fail();
}

} // namespace scenedetect
