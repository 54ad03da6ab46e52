#include "products/files/OutputFile.h"

#include "reading/base/HostError.h"

#include <algorithm>
#include <array>
#include <atomic>
#include <cerrno>
#include <cstdio>
#include <fcntl.h>
#include <filesystem>
#include <poll.h>
#include <random>
#include <unistd.h>
#include <utility>

namespace scenedetect {
namespace {

constexpr std::size_t kPendingBytes = 1 << 16;
constexpr mode_t kMode = 0666; // the umask takes away what it is set to

std::filesystem::path FolderOf(const std::filesystem::path& file) {
    return file.has_parent_path() ? file.parent_path() : ".";
}

// Short, whatever the final name's length. The dot hides it from listings and from patterns of the shell.
std::string HiddenName() {
    static std::atomic<unsigned> counter = 0;
    std::random_device random;
    std::array<char, 40> text{};
    std::snprintf(text.data(), text.size(), ".kxscenes-%08x-%x.part", random(), counter++);
    return text.data();
}

} // namespace

OutputFile::OutputFile(std::string path, Existing existing)
    : m_path(std::move(path)), m_existing(existing), m_target(FindOutputTarget(m_path, existing)) {
    switch (m_target.kind) {
    case OutputTarget::Kind::Descriptor:
        m_descriptor = fcntl(m_target.descriptor, F_DUPFD_CLOEXEC, 0);
        m_writingPath = "/dev/fd/" + std::to_string(m_descriptor);
        break;
    case OutputTarget::Kind::Device:
        m_writingPath = m_target.file.native();
        m_descriptor = open(m_writingPath.c_str(), O_WRONLY | O_CLOEXEC);
        break;
    case OutputTarget::Kind::File:
        OpenBeside();
        break;
    }
    if (m_descriptor == -1)
        Fail(errno);
}

OutputFile::~OutputFile() {
    if (m_descriptor != -1)
        close(m_descriptor);
    if (m_unfinished)
        unlink(m_writingPath.c_str());
}

void OutputFile::Fail(int code) const {
    if (code == EPIPE && m_target.descriptor == STDOUT_FILENO)
        throw OutputClosed();
    FailToWrite(m_path, code);
}

void OutputFile::OpenBeside() {
    std::error_code error;
    if (std::filesystem::create_directories(FolderOf(m_target.file), error); error)
        FailToWrite(m_path, error.value());
    do {
        m_writingPath = (FolderOf(m_target.file) / HiddenName()).native();
        m_descriptor = open(m_writingPath.c_str(), O_RDWR | O_CREAT | O_EXCL | O_CLOEXEC, kMode);
    } while (m_descriptor == -1 && errno == EEXIST);
    if (m_descriptor != -1)
        m_unfinished.emplace(m_writingPath);
}

void OutputFile::Write(std::span<const std::uint8_t> bytes) {
    if (m_pending.size() + bytes.size() > kPendingBytes)
        Flush();
    if (bytes.size() > kPendingBytes)
        Send(bytes);
    else
        m_pending.insert(m_pending.end(), bytes.begin(), bytes.end());
    m_size += static_cast<std::int64_t>(bytes.size());
}

void OutputFile::Write(std::string_view text) {
    Write({reinterpret_cast<const std::uint8_t*>(text.data()), text.size()});
}

void OutputFile::Flush() {
    Send(m_pending);
    m_pending.clear();
}

void OutputFile::Send(std::span<const std::uint8_t> bytes) {
    while (!bytes.empty()) {
        const ssize_t sent = write(m_descriptor, bytes.data(), bytes.size());
        if (sent >= 0) {
            bytes = bytes.subspan(static_cast<std::size_t>(sent));
        } else if (errno == EAGAIN) { // a pipe that somebody else has set so
            pollfd waiting{m_descriptor, POLLOUT, 0};
            poll(&waiting, 1, -1);
        } else if (errno != EINTR) {
            Fail(errno);
        }
    }
}

void OutputFile::MoveTail(std::int64_t offset, OutputFile& target) {
    Flush();
    std::vector<std::uint8_t> piece(kPendingBytes);
    for (std::int64_t from = offset; from < m_size;) {
        const ssize_t got = pread(m_descriptor, piece.data(), piece.size(), from);
        if (got < 0 && errno == EINTR)
            continue;
        if (got <= 0)
            Fail(got == 0 ? EIO : errno);
        target.Write(std::span(piece).first(static_cast<std::size_t>(got)));
        from += got;
    }
    if (ftruncate(m_descriptor, offset) != 0 || lseek(m_descriptor, offset, SEEK_SET) == -1)
        Fail(errno);
    m_size = offset;
}

// Some file systems tell only now that there was no room.
void OutputFile::Close() {
    if (close(std::exchange(m_descriptor, -1)) != 0 && errno != EINTR)
        Fail(errno);
}

void OutputFile::Commit() {
    Flush();
    Close();
    if (m_unfinished)
        TakeFinalName();
}

void OutputFile::TakeFinalName() {
    const char* const from = m_writingPath.c_str();
    const char* const to = m_target.file.c_str();
    if (m_existing == Existing::Replace) {
        if (rename(from, to) != 0)
            Fail(errno);
        m_unfinished.reset();
        return;
    }
    if (renameat2(AT_FDCWD, from, AT_FDCWD, to, RENAME_NOREPLACE) == 0) {
        m_unfinished.reset();
        return;
    }
    // Not every file system can do that. A second name is refused where the name is taken, too; the first
    // goes with this object.
    if (errno == EEXIST || link(from, to) != 0)
        Fail(errno);
}

void WriteFile(const std::string& path, Existing existing, std::string_view text) {
    OutputFile file(path, existing);
    file.Write(text);
    file.Commit();
}

namespace {

// `path` is what the folder is wanted for.
void RequireFolder(const std::filesystem::path& folder, const std::string& path) {
    std::error_code error;
    std::filesystem::path nearest = std::filesystem::absolute(folder, error);
    while (!std::filesystem::exists(nearest, error) && nearest.has_relative_path())
        nearest = nearest.parent_path();
    if (!std::filesystem::is_directory(nearest, error))
        FailToWrite(path, ENOTDIR);
    if (access(nearest.c_str(), W_OK | X_OK) != 0)
        FailToWrite(path, errno);
}

} // namespace

void RequireWritable(const std::string& path, Existing existing) {
    const OutputTarget target = FindOutputTarget(path, existing);
    if (target.kind != OutputTarget::Kind::File)
        return;
    std::error_code error;
    if (const auto folder = FolderOf(target.file); std::filesystem::exists(folder, error))
        OutputFile(path, existing); // trying tells more than asking, and leaves nothing
    else
        RequireFolder(folder, path);
}

void RequireWritableFolder(const std::string& folder) {
    RequireFolder(folder, folder);
}

} // namespace scenedetect
