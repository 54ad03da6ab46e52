// A file, a pipe or the standard input, as the system hands it out.
#pragma once

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string>

namespace scenedetect {

/// One thread at a time, but for ReadAt.
class ByteSource {
  public:
    /// "-" is the standard input. HostError, here and from all that reads, when it can't be read.
    explicit ByteSource(const std::string& path);
    ~ByteSource();
    ByteSource(const ByteSource&) = delete;
    ByteSource& operator=(const ByteSource&) = delete;

    /// For people.
    [[nodiscard]] const std::string& Name() const { return m_name; }
    /// Of a file from where it stood when it was opened, which is offset 0; negative of a stream.
    [[nodiscard]] std::int64_t Size() const { return m_size; }
    [[nodiscard]] bool IsFile() const { return m_size >= 0; }

    /// Waits until there is something to read, the end included, or until `stop` is set, which any thread may
    /// do. False when it is set.
    [[nodiscard]] bool Wait(const std::atomic<bool>& stop) const;
    /// What is there, at the most as much as `target` takes; nothing at the end, and nothing of a stream when
    /// there is nothing yet, where `isEnd` then stays false.
    [[nodiscard]] std::size_t Read(std::span<std::uint8_t> target, bool& isEnd);
    /// Likewise from an offset of a file; any threads at a time. Read needs GoTo after it.
    [[nodiscard]] std::size_t ReadAt(std::span<std::uint8_t> target, std::int64_t offset) const;
    /// Of a file: where Read goes on.
    void GoTo(std::int64_t offset);

  private:
    [[noreturn]] void Fail() const; // for the system's last error

    const std::string m_name;
    std::intptr_t m_handle;
    std::int64_t m_size = -1;
    std::int64_t m_origin = 0; // of a file that was opened, and partly read, by somebody else
};

} // namespace scenedetect
