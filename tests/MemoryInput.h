// A file that is a block of memory.
#pragma once

#include "reading/readers/ByteInput.h"

#include <algorithm>
#include <utility>
#include <vector>

namespace scenedetect::testing_support {

class MemoryInput final : public ByteInput {
  public:
    explicit MemoryInput(std::vector<std::uint8_t> bytes) : m_bytes(std::move(bytes)) {}

    [[nodiscard]] const std::string& Path() const override { return m_path; }
    [[nodiscard]] std::int64_t Size() const override { return static_cast<std::int64_t>(m_bytes.size()); }
    [[nodiscard]] std::int64_t Position() const override { return m_position; }
    [[nodiscard]] bool IsStopped() const override { return false; }
    [[nodiscard]] std::size_t Read(std::span<std::uint8_t> target) override {
        const std::int64_t left = std::max<std::int64_t>(0, Size() - m_position);
        const std::size_t bytes = std::min(target.size(), static_cast<std::size_t>(left));
        std::copy_n(m_bytes.begin() + std::min(m_position, Size()), bytes, target.begin());
        m_position += static_cast<std::int64_t>(bytes);
        return bytes;
    }
    void Skip(std::int64_t bytes) override { m_position += bytes; }

  private:
    const std::string m_path = "memory";
    const std::vector<std::uint8_t> m_bytes;
    std::int64_t m_position = 0;
};

} // namespace scenedetect::testing_support
