// The bytes of a file, a pipe or the standard input; waiting for them ends at once when the run is stopped.
#pragma once

#include "reading/readers/ByteInput.h"
#include "reading/readers/ByteSource.h"

#include <atomic>
#include <vector>

namespace scenedetect {

/// `stop`, which must outlive the object, may be set by any thread.
class StreamInput final : public ByteInput {
  public:
    /// Opens the file; "-" is the standard input. HostError when it can't be read.
    StreamInput(const std::string& path, const std::atomic<bool>& stop) : m_source(path), m_stop(stop) {}

    [[nodiscard]] const std::string& Path() const override { return m_source.Name(); }
    [[nodiscard]] std::int64_t Size() const override { return m_source.Size(); }
    [[nodiscard]] std::int64_t Position() const override { return m_position; }
    [[nodiscard]] bool IsStopped() const override { return m_stop; }
    [[nodiscard]] std::size_t Read(std::span<std::uint8_t> target) override;
    [[nodiscard]] std::size_t ReadAtLeast(std::span<std::uint8_t> target, std::size_t least) override;
    [[nodiscard]] bool HasReadAt() const override { return IsFile(); }
    [[nodiscard]] std::size_t ReadAt(std::span<std::uint8_t> target, std::int64_t offset) const override;
    void Skip(std::int64_t bytes) override;

    /// Whether it has an end that is known, and can be read in any order.
    [[nodiscard]] bool IsFile() const { return m_source.IsFile(); }
    /// To the beginning: of a stream that is no file only until Settle.
    void Rewind() { GoTo(0); }
    /// To any place of a file.
    void GoTo(std::int64_t position);
    /// What is read from now on need not be kept for Rewind.
    void Settle() { m_isKeeping = false; }

  private:
    ByteSource m_source;
    const std::atomic<bool>& m_stop;
    std::int64_t m_position = 0;
    bool m_isKeeping = true;
    std::vector<std::uint8_t> m_kept; // the beginning of a stream that is no file
};

/// A whole file. HostError when it can't be read.
[[nodiscard]] std::string ReadTextFile(const std::string& path);

} // namespace scenedetect
