// A file opened by its wide path: whole reads and writes, moves, and the sharing that hosts expect.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

namespace scenedetect {

/// An unbuffered binary file, closed with the object. Others may read and write it while it is open.
/// One thread at a time.
class File {
  public:
    enum class Mode {
        Read,  ///< an existing file
        Write, ///< created, or emptied when it exists
    };

    File() = default;
    ~File();
    File(const File&) = delete;
    File& operator=(const File&) = delete;

    /// Opens `path` (closing any file open before). The wide text goes to the system as it is on Windows
    /// and as UTF-8 elsewhere, whatever the locale. False when the system refuses.
    [[nodiscard]] bool Open(const std::wstring& path, Mode mode);
    [[nodiscard]] bool IsOpen() const;

    /// Reads up to `bytes`; fewer only at the end of the file or on an error.
    [[nodiscard]] std::size_t Read(void* data, std::size_t bytes);
    /// Writes everything, or reports false.
    [[nodiscard]] bool Write(const void* data, std::size_t bytes);
    /// Moves the position by `offset` bytes from where it stands.
    [[nodiscard]] bool SeekForward(std::int64_t offset);
    /// False when the system reports that something written before was lost.
    bool Close();

  private:
    std::intptr_t m_handle = -1;
};

} // namespace scenedetect
