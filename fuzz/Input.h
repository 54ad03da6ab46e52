// What every fuzz target does with its input: take numbers off its front and make blocks from the rest.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <span>
#include <vector>

namespace scenedetect::fuzz {

/// Ends the run: the code under test broke a promise.
inline void Require(bool promise) {
    if (!promise)
        std::abort();
}

/// Reads past the end give 0.
class Input {
  public:
    Input(const std::uint8_t* data, std::size_t size) : m_rest(data, size) {}

    template <typename Number>
    Number Take() {
        Number number{};
        const auto bytes = TakeBytes(sizeof(number));
        if (!bytes.empty())
            std::memcpy(&number, bytes.data(), bytes.size());
        return number;
    }

    [[nodiscard]] bool IsEmpty() const { return m_rest.empty(); }

    /// Fewer at the end.
    std::span<const std::uint8_t> TakeBytes(std::size_t size) {
        const auto taken = m_rest.first(std::min(size, m_rest.size()));
        m_rest = m_rest.subspan(taken.size());
        return taken;
    }

    /// A block of exactly `size` bytes, so that the address sanitizer guards its ends: what is left, repeated
    /// as often as it takes. Small inputs can so fill whole frames.
    [[nodiscard]] std::vector<std::uint8_t> Repeated(std::size_t size) const {
        std::vector<std::uint8_t> block(size);
        for (std::size_t done = 0; done < size && !m_rest.empty(); done += m_rest.size())
            std::memcpy(&block[done], m_rest.data(), std::min(size - done, m_rest.size()));
        return block;
    }

  private:
    std::span<const std::uint8_t> m_rest;
};

} // namespace scenedetect::fuzz
