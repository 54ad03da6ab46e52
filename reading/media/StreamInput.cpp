#include "reading/media/StreamInput.h"

#include "reading/base/HostError.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <fcntl.h>
#include <poll.h>
#include <string_view>
#include <sys/stat.h>
#include <system_error>
#include <unistd.h>

namespace scenedetect {
namespace {

constexpr std::string_view kStandardInput = "-";

// Without waiting for whoever writes a named pipe: reading waits, and can be stopped.
int Open(const std::string& path) {
    return path == kStandardInput ? fcntl(STDIN_FILENO, F_DUPFD_CLOEXEC, 0)
                                  : open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK);
}

} // namespace

StreamInput::StreamInput(const std::string& path, const std::atomic<bool>& stop)
    : m_path(path == kStandardInput ? "standard input" : path), m_stop(stop), m_descriptor(Open(path)) {
    struct stat status {};
    if (m_descriptor == -1 || fstat(m_descriptor, &status) != 0)
        Fail(errno);
    if (!S_ISREG(status.st_mode))
        return;
    m_origin = std::max<std::int64_t>(lseek(m_descriptor, 0, SEEK_CUR), 0);
    m_size = std::max<std::int64_t>(status.st_size - m_origin, 0);
}

StreamInput::~StreamInput() {
    close(m_descriptor);
}

void StreamInput::Fail(int code) const {
    const std::string why = code == EINTR ? "stopped" : std::generic_category().message(code);
    throw HostError(m_path + ": cannot be read: " + why);
}

// A signal may be taken by another thread, which then leaves a read of this one waiting.
bool StreamInput::WaitForBytes() const {
    constexpr int kMilliseconds = 50;
    if (IsFile())
        return true;
    pollfd waiting{m_descriptor, POLLIN, 0};
    while (!m_stop)
        if (poll(&waiting, 1, kMilliseconds) > 0)
            return true;
    return false;
}

std::size_t StreamInput::Read(std::span<std::uint8_t> target) {
    return ReadAtLeast(target, target.size());
}

std::size_t StreamInput::ReadAtLeast(std::span<std::uint8_t> target, std::size_t least) {
    std::size_t have = 0;
    if (m_position < std::ssize(m_kept)) {
        const auto rest = std::span(m_kept).subspan(static_cast<std::size_t>(m_position));
        have = std::min(rest.size(), target.size());
        std::copy_n(rest.begin(), have, target.begin());
    }
    const std::size_t kept = have;
    while (have < least && WaitForBytes()) {
        const ssize_t count = read(m_descriptor, target.data() + have, target.size() - have);
        if (count == 0)
            break;
        if (count < 0 && errno != EINTR && errno != EAGAIN)
            Fail(errno);
        have += static_cast<std::size_t>(std::max<ssize_t>(count, 0));
    }
    m_position += static_cast<std::int64_t>(have);
    if (!IsFile() && m_isKeeping)
        m_kept.insert(m_kept.end(), target.begin() + static_cast<std::ptrdiff_t>(kept),
                      target.begin() + static_cast<std::ptrdiff_t>(have));
    else if (m_position >= std::ssize(m_kept))
        std::vector<std::uint8_t>().swap(m_kept);
    return have;
}

std::size_t StreamInput::ReadAt(std::span<std::uint8_t> target, std::int64_t offset) const {
    std::size_t have = 0;
    while (have < target.size()) {
        const auto from = static_cast<off_t>(m_origin + offset) + static_cast<off_t>(have);
        const ssize_t count = pread(m_descriptor, target.data() + have, target.size() - have, from);
        if (count == 0)
            break;
        if (count < 0 && errno != EINTR)
            Fail(errno);
        have += static_cast<std::size_t>(std::max<ssize_t>(count, 0));
    }
    return have;
}

void StreamInput::Skip(std::int64_t bytes) {
    if (IsFile())
        return GoTo(m_position + bytes);
    std::array<std::uint8_t, 1 << 14> skipped;
    while (bytes > 0) {
        const auto wanted = std::min<std::int64_t>(bytes, skipped.size());
        const std::size_t count = Read({skipped.data(), static_cast<std::size_t>(wanted)});
        if (count == 0)
            return;
        bytes -= static_cast<std::int64_t>(count);
    }
}

void StreamInput::GoTo(std::int64_t position) {
    if (IsFile() && lseek(m_descriptor, m_origin + position, SEEK_SET) == -1)
        Fail(errno);
    m_position = position;
}

} // namespace scenedetect
