// A window over a stream of bytes that are read once and stay where they were read to.
#pragma once

#include "reading/readers/ByteInput.h"
#include "reading/readers/Picture.h"
#include "reading/readers/ReadAhead.h"
#include "reading/readers/ReadBuffer.h"

#include <cstdint>
#include <memory>
#include <span>

namespace scenedetect {

/// Reads into buffers of a pool. Pieces can be shared: a buffer is used again when nobody holds a piece of it
/// any more. One thread at a time, but for the owners of pieces, which may be let go on any thread, also
/// after the window's end.
class ReadWindow {
  public:
    /// `input` must outlive the object. With a thread it is read by that one as well, if it has ReadAt.
    ReadWindow(ByteInput& input, bool hasThread);
    ReadWindow(const ReadWindow&) = delete;
    ReadWindow& operator=(const ReadWindow&) = delete;

    /// Whether a thread for the rest of the input gains anything: for long files, where there is a processor
    /// for it.
    [[nodiscard]] static bool GainsByThread(const ByteInput& input);

    /// Exactly `bytes` (at most kMostBytes) from the window's beginning on, fewer only at the end of the
    /// input. More is read ahead in whole `units`, where the input has it at once. Valid until the next
    /// call. Bytes are moved only when they lie across the end of a buffer, which whole units never do.
    /// HostError when reading fails, std::bad_alloc.
    [[nodiscard]] std::span<std::uint8_t> Peek(std::size_t bytes, std::size_t unit);
    static constexpr std::size_t kMostBytes = ReadBuffer::kHeadBytes;

    /// Moves the window's beginning.
    void Drop(std::size_t bytes);
    /// Moves it back over bytes that were dropped; at most kBackBytes (fewer where the input begins).
    void GoBack(std::size_t bytes);
    static constexpr std::size_t kBackBytes = ReadBuffer::kBackBytes;
    /// Keeps the bytes that the window holds now where they are until it is let go.
    [[nodiscard]] BytesOwner Share();
    /// Offset of the window's beginning in the input.
    [[nodiscard]] std::int64_t Offset() const { return m_offset; }

  private:
    void TakeAhead(std::size_t unit);
    void MoveTo(ReadBuffer::Holder buffer, std::size_t begin);

    ByteInput& m_input;
    ReadBufferPool m_pool;
    std::unique_ptr<ReadAhead> m_ahead; // as long as it has anything
    ReadBuffer::Holder m_buffer;        // the one with the window
    std::size_t m_begin = kBackBytes;
    std::size_t m_end = kBackBytes;
    std::int64_t m_offset;
};

} // namespace scenedetect
