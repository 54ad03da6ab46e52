#include "products/files/SystemFile.h"

#include <cerrno>
#include <cstdio>
#include <fcntl.h>
#include <poll.h>
#include <string_view>
#include <sys/stat.h>
#include <system_error>
#include <unistd.h>
#include <utility>

namespace scenedetect {
namespace {

constexpr mode_t kMode = 0666; // the umask takes away what it is set to

int Descriptor(std::intptr_t handle) {
    return static_cast<int>(handle);
}

int ErrorOf(bool isGood) {
    return isGood ? 0 : errno;
}

std::string_view Advice(int code) {
    switch (code) {
    case ENOSPC:
    case EDQUOT:
        return "; make room there, or choose another folder";
    case EFBIG:
        return "; the system or its file system allows no larger files there";
    default:
        return "";
    }
}

} // namespace

int SystemFile::OpenDescriptor(int descriptor) {
    m_handle = fcntl(descriptor, F_DUPFD_CLOEXEC, 0);
    return ErrorOf(m_handle != -1);
}

int SystemFile::OpenDevice(const std::filesystem::path& path) {
    m_handle = open(path.c_str(), O_WRONLY | O_CLOEXEC);
    return ErrorOf(m_handle != -1);
}

int SystemFile::Create(const std::filesystem::path& path) {
    m_handle = open(path.c_str(), O_RDWR | O_CREAT | O_EXCL | O_CLOEXEC, kMode);
    return ErrorOf(m_handle != -1);
}

int SystemFile::Write(std::span<const std::uint8_t> bytes) {
    while (!bytes.empty()) {
        const ssize_t sent = write(Descriptor(m_handle), bytes.data(), bytes.size());
        if (sent >= 0) {
            bytes = bytes.subspan(static_cast<std::size_t>(sent));
        } else if (errno == EAGAIN) { // a pipe that somebody else has set so
            pollfd waiting{Descriptor(m_handle), POLLOUT, 0};
            poll(&waiting, 1, -1);
        } else if (errno != EINTR) {
            return errno;
        }
    }
    return 0;
}

int SystemFile::ReadAt(std::int64_t offset, std::span<std::uint8_t> target, std::size_t& got) {
    for (got = 0; got < target.size();) {
        const ssize_t count = pread(Descriptor(m_handle), target.data() + got, target.size() - got,
                                    offset + static_cast<off_t>(got));
        if (count == 0)
            break;
        if (count < 0 && errno != EINTR)
            return errno;
        got += static_cast<std::size_t>(count > 0 ? count : 0);
    }
    return 0;
}

int SystemFile::CutAt(std::int64_t offset) {
    return ErrorOf(ftruncate(Descriptor(m_handle), offset) == 0 &&
                   lseek(Descriptor(m_handle), offset, SEEK_SET) != -1);
}

int SystemFile::Close() {
    const int descriptor = Descriptor(std::exchange(m_handle, -1));
    return ErrorOf(descriptor == -1 || close(descriptor) == 0 || errno == EINTR);
}

std::string SystemFile::DescriptorPath() const {
    return "/dev/fd/" + std::to_string(m_handle);
}

std::string WriteErrorText(int code) {
    return std::generic_category().message(code) + std::string(Advice(code));
}

bool IsExistingError(int code) {
    return code == EEXIST;
}

int GiveFinalName(const std::filesystem::path& from, const std::filesystem::path& to, Existing existing,
                  bool& isMoved) {
    isMoved = existing == Existing::Replace
                  ? rename(from.c_str(), to.c_str()) == 0
                  : renameat2(AT_FDCWD, from.c_str(), AT_FDCWD, to.c_str(), RENAME_NOREPLACE) == 0;
    if (isMoved || existing == Existing::Replace)
        return ErrorOf(isMoved);
    // Not every file system can do that. A second name is refused where the name is taken, too.
    return ErrorOf(errno != EEXIST && link(from.c_str(), to.c_str()) == 0);
}

void RemoveFile(const char* path) noexcept {
    unlink(path);
}

int MakeFolders(const std::filesystem::path& folder) {
    std::error_code error;
    std::filesystem::create_directories(folder, error);
    return error.value();
}

int FolderObstacle(const std::filesystem::path& folder) {
    return ErrorOf(access(folder.c_str(), W_OK | X_OK) == 0);
}

int NoFolderError() {
    return ENOTDIR;
}

std::string WholeName(const std::filesystem::path& path) {
    std::error_code error;
    const std::filesystem::path whole =
        std::filesystem::weakly_canonical(std::filesystem::absolute(path, error), error);
    return (error ? path : whole).native();
}

} // namespace scenedetect
