// The bytes of a file from front to back: what readers of raw streams and containers stand on.
#pragma once

#include <algorithm>
#include <cstdint>
#include <span>
#include <string>

namespace scenedetect {

/// One thread at a time, but for whoever stops it.
class ByteInput {
  public:
    virtual ~ByteInput() = default;

    [[nodiscard]] virtual const std::string& Path() const = 0;
    /// Bytes of the whole file; negative when unknown.
    [[nodiscard]] virtual std::int64_t Size() const = 0;
    /// Offset of the byte to be read next.
    [[nodiscard]] virtual std::int64_t Position() const = 0;
    /// Whether the run was stopped from outside; what was read last may then be cut short.
    [[nodiscard]] virtual bool IsStopped() const = 0;

    /// Fills `target` as far as the file goes, and returns how much that is. HostError when reading fails.
    [[nodiscard]] virtual std::size_t Read(std::span<std::uint8_t> target) = 0;
    /// The same for whoever can do with the first `least` bytes: returns once it has these, and more only of
    /// what is there already. Fewer at the end, and when the run was stopped.
    [[nodiscard]] virtual std::size_t ReadAtLeast(std::span<std::uint8_t> target, std::size_t least) {
        (void)least; // a file has it all
        return Read(target);
    }
    /// Whether ReadAt can be called.
    [[nodiscard]] virtual bool HasReadAt() const { return false; }
    /// Like Read, but from an offset and without a move of the position; any threads at a time.
    [[nodiscard]] virtual std::size_t ReadAt(std::span<std::uint8_t> target, std::int64_t offset) const {
        (void)target, (void)offset;
        return 0;
    }
    /// Steps over bytes; after the file's end there is nothing to read. HostError when that fails.
    virtual void Skip(std::int64_t bytes) = 0;

    /// The part of the file that was read, 0 to 1; negative when its size is unknown.
    [[nodiscard]] double Fraction() const {
        if (Size() <= 0)
            return -1;
        return std::clamp(static_cast<double>(Position()) / static_cast<double>(Size()), 0.0, 1.0);
    }
};

} // namespace scenedetect
