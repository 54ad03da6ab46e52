// A file that is a block of memory, read in one of the ways in which bytes come.
#pragma once

#include "reading/base/HostError.h"
#include "reading/readers/ByteInput.h"

#include <algorithm>
#include <optional>
#include <random>
#include <span>
#include <utility>
#include <vector>

namespace scenedetect::testing_support {

class MemoryInput : public ByteInput {
  public:
    /// Bytes that stay as long as the object.
    explicit MemoryInput(std::span<const std::uint8_t> bytes) : m_bytes(bytes), m_size(std::ssize(m_bytes)) {}
    explicit MemoryInput(std::vector<std::uint8_t>&& bytes)
        : m_own(std::move(bytes)), m_bytes(m_own), m_size(std::ssize(m_bytes)) {}

    /// From now on like a pipe: of unknown size, with any number of bytes at a time.
    MemoryInput& ComeInPieces(unsigned seed) {
        m_size = -1;
        m_random.emplace(seed);
        return *this;
    }
    /// From now on a file that has become shorter: it had so many bytes more when it was opened.
    MemoryInput& Lack(std::int64_t bytes) {
        m_size += bytes;
        return *this;
    }

    /// From now on one that cannot be read where its bytes end.
    void FailAtTheEnd() { m_fails = true; }

    [[nodiscard]] const std::string& Path() const override { return m_path; }
    [[nodiscard]] std::int64_t Size() const override { return m_size; }
    [[nodiscard]] std::int64_t Position() const override { return m_position; }
    [[nodiscard]] bool IsStopped() const override { return false; }
    [[nodiscard]] std::size_t Read(std::span<std::uint8_t> target) override {
        const std::size_t bytes = ReadAt(target, m_position);
        m_position += static_cast<std::int64_t>(bytes);
        return bytes;
    }
    [[nodiscard]] std::size_t ReadAtLeast(std::span<std::uint8_t> target, std::size_t least) override {
        const std::size_t more = target.size() - least;
        return Read(m_random ? target.first(least + (*m_random)() % (more + 1)) : target);
    }
    [[nodiscard]] bool HasReadAt() const override { return !m_random; }
    [[nodiscard]] std::size_t ReadAt(std::span<std::uint8_t> target, std::int64_t offset) const override {
        const auto rest = m_bytes.subspan(std::min(static_cast<std::size_t>(offset), m_bytes.size()));
        const std::size_t bytes = std::min(target.size(), rest.size());
        if (m_fails && bytes < target.size())
            throw HostError("broken");
        std::copy_n(rest.begin(), bytes, target.begin());
        return bytes;
    }
    void Skip(std::int64_t bytes) override { m_position += bytes; }

  private:
    const std::string m_path = "memory";
    const std::vector<std::uint8_t> m_own;
    const std::span<const std::uint8_t> m_bytes;
    std::int64_t m_size;
    std::int64_t m_position = 0;
    bool m_fails = false;
    std::optional<std::minstd_rand> m_random; // of pieces
};

} // namespace scenedetect::testing_support
