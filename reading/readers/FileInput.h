// The bytes of a file on disk.
#pragma once

#include "platform/File.h"
#include "reading/readers/ByteInput.h"

#include <atomic>
#include <string>

namespace scenedetect {

/// `stop`, which must outlive the object, may be set by any thread.
class FileInput final : public ByteInput {
  public:
    /// Opens the file; HostError when it can't be read.
    FileInput(std::string path, const std::atomic<bool>& stop);

    [[nodiscard]] const std::string& Path() const override { return m_path; }
    [[nodiscard]] std::int64_t Size() const override { return m_size; }
    [[nodiscard]] std::int64_t Position() const override { return m_position; }
    [[nodiscard]] bool IsStopped() const override { return m_stop; }
    [[nodiscard]] std::size_t Read(std::span<std::uint8_t> target) override;
    void Skip(std::int64_t bytes) override;

  private:
    [[noreturn]] void Fail(const std::string& why) const;

    const std::string m_path;
    const std::atomic<bool>& m_stop;
    File m_file;
    std::int64_t m_size = -1;
    std::int64_t m_position = 0;
};

/// A whole file. HostError when it can't be read.
[[nodiscard]] std::string ReadTextFile(const std::string& path);

} // namespace scenedetect
