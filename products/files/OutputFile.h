// A file that appears under its name when it is whole, and not before.
#pragma once

#include "products/files/SystemFile.h"
#include "products/files/UnfinishedFile.h"

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace scenedetect {

/// Bytes go to a hidden file beside the final one, which takes its name with Commit; without that nothing
/// remains. A folder that is not there is made. A symbolic link stays one, and the file that it leads to is
/// replaced; on Windows it has to be there. Pipes, devices and the standard output ("-") are written straight.
/// All members throw HostError when writing fails, with a line that names the file and the reason. One thread
/// at a time.
class OutputFile {
  public:
    /// Opening a pipe waits for its reader.
    OutputFile(std::string path, Existing existing);
    ~OutputFile();
    OutputFile(const OutputFile&) = delete;
    OutputFile& operator=(const OutputFile&) = delete;

    /// Small pieces are collected, large ones go out without a copy.
    void Write(std::span<const std::uint8_t> bytes);
    void Write(std::string_view text);
    /// Sends out what was collected.
    void Flush();
    /// Moves what was written from `offset` on to the end of another file.
    void MoveTail(std::int64_t offset, OutputFile& target);
    /// Closes the file and gives it its name. Under Existing::Keep a file of this name that has come up
    /// meanwhile stays, and this fails. Nothing can be written any more.
    void Commit();

    [[nodiscard]] const std::string& Path() const { return m_path; }
    /// For libraries that write by name, instead of Write: what is there already is replaced by them.
    [[nodiscard]] const std::string& WritingPath() const { return m_writingPath; }
    /// Bytes given to Write so far.
    [[nodiscard]] std::int64_t Size() const { return m_size; }

  private:
    void Require(int code) const; // Fail unless it is 0
    [[noreturn]] void Fail(int code) const;
    void OpenBeside();

    const std::string m_path;
    const Existing m_existing;
    const OutputTarget m_target;
    std::string m_writingPath;
    SystemFile m_file;
    std::optional<UnfinishedFile> m_unfinished; // while m_writingPath is to be renamed or removed
    std::int64_t m_size = 0;
    std::vector<std::uint8_t> m_pending;
};

/// A file that is written all at once.
void WriteFile(const std::string& path, Existing existing, std::string_view text);

/// HostError now when an OutputFile of this path would fail at once later on: the folder is read-only or
/// can't be made, the file is there and is to be kept. Leaves nothing behind.
void RequireWritable(const std::string& path, Existing existing);
/// The same for a folder of outputs, which is made when the first of them comes.
void RequireWritableFolder(const std::string& folder);

} // namespace scenedetect
