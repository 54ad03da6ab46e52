// A window over a stream of bytes that are read once and stay where they were read to.
#pragma once

#include "hosts/shared/ByteInput.h"
#include "hosts/shared/Picture.h"

#include <cstdint>
#include <memory>
#include <span>
#include <vector>

namespace scenedetect {

/// Reads into blocks of a pool. Pieces can be shared: a block is used again when nobody holds a piece of it
/// any more. One thread at a time, but for the owners of pieces, which may be let go on any thread, also
/// after the window's end.
class ReadWindow {
  public:
    /// `input` must outlive the object.
    explicit ReadWindow(ByteInput& input) : m_input(input) {}
    ~ReadWindow();
    ReadWindow(const ReadWindow&) = delete;
    ReadWindow& operator=(const ReadWindow&) = delete;

    /// What has been read and not been dropped: at least `bytes` (at most kMostBytes), fewer at the end of
    /// the input. More is read ahead in whole `units`, where the input has it at once. Valid until the next
    /// call. Bytes are moved only when they lie across the end of a block, which whole units never do.
    /// HostError when reading fails, std::bad_alloc.
    [[nodiscard]] std::span<std::uint8_t> Have(std::size_t bytes, std::size_t unit);
    static constexpr std::size_t kMostBytes = 2 * kDifFrameBytes625;

    /// Moves the window's beginning.
    void Drop(std::size_t bytes);
    /// Moves it back over bytes that were dropped; at most kBackBytes (fewer where the input begins).
    void GoBack(std::size_t bytes);
    static constexpr std::size_t kBackBytes = 128;
    /// Keeps the bytes that the window holds now where they are until it is let go.
    [[nodiscard]] BytesOwner Share();
    /// Offset of the window's beginning in the input.
    [[nodiscard]] std::int64_t Offset() const { return m_offset; }

  private:
    struct Block;
    static void Release(void* block);

    Block& FreeBlock();

    ByteInput& m_input;
    std::vector<Block*> m_blocks;
    Block* m_block = nullptr; // the one with the window
    std::size_t m_begin = kBackBytes;
    std::size_t m_end = kBackBytes;
    std::int64_t m_offset = 0;
};

} // namespace scenedetect
