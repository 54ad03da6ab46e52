#include "reading/readers/ReadWindow.h"

#include "platform/UsableCores.h"

#include <algorithm>
#include <cstring>
#include <utility>

namespace scenedetect {
namespace {

// What is read before a thread for the rest would have begun.
constexpr std::int64_t kShortFile = 16 * ReadBuffer::kReadBytes;
// As much of a buffer as one thread uses at a time.
constexpr std::size_t kUsedBytes = ReadWindow::kBackBytes + ReadBuffer::kReadBytes;
static_assert(ReadWindow::kBackBytes + ReadWindow::kMostBytes <= kUsedBytes);

} // namespace

ReadWindow::ReadWindow(ByteInput& input, bool hasThread) : m_input(input), m_offset(input.Position()) {
    if (hasThread && input.HasReadAt())
        m_ahead = std::make_unique<ReadAhead>(input, m_pool);
}

bool ReadWindow::GainsByThread(const ByteInput& input) {
    return input.Size() - input.Position() > kShortFile && UsableCores() > 1;
}

// The window goes on in another buffer, whose bytes in front of `begin` are free.
void ReadWindow::MoveTo(ReadBuffer::Holder buffer, std::size_t begin) {
    const std::size_t have = m_end - m_begin;
    if (m_buffer) {
        const std::size_t back = std::min(m_begin, kBackBytes);
        std::memcpy(buffer->bytes + begin - back, m_buffer->bytes + m_begin - back, back + have);
    }
    m_buffer = std::move(buffer);
    m_begin = begin;
    m_end = begin + have;
}

// Without any more pieces ahead, reading goes on after those that were taken.
void ReadWindow::TakeAhead(std::size_t unit) {
    ReadAhead::Piece piece = m_ahead->Next(m_offset, unit);
    if (!piece.buffer || piece.isLast)
        m_ahead.reset();
    if (!piece.buffer)
        return;
    MoveTo(std::move(piece.buffer), kBackBytes + ReadBuffer::kHeadBytes - (m_end - m_begin));
    m_end += piece.bytes;
    m_input.Skip(static_cast<std::int64_t>(piece.bytes));
}

std::span<std::uint8_t> ReadWindow::Peek(std::size_t bytes, std::size_t unit) {
    while (m_ahead && m_end - m_begin < bytes)
        TakeAhead(unit);
    if (m_end - m_begin < bytes) {
        if (!m_buffer || m_begin + bytes > kUsedBytes)
            MoveTo(m_pool.Take(), kBackBytes);
        const std::size_t have = m_end - m_begin;
        const std::size_t wanted = std::max(bytes, (kUsedBytes - m_begin) / unit * unit) - have;
        m_end += m_input.ReadAtLeast({m_buffer->bytes + m_end, wanted}, bytes - have);
    }
    return {m_buffer->bytes + m_begin, std::min(bytes, m_end - m_begin)};
}

void ReadWindow::Drop(std::size_t bytes) {
    m_begin += bytes;
    m_offset += static_cast<std::int64_t>(bytes);
}

void ReadWindow::GoBack(std::size_t bytes) {
    bytes = std::min(bytes, static_cast<std::size_t>(std::min<std::int64_t>(m_offset, kBackBytes)));
    m_begin -= bytes;
    m_offset -= static_cast<std::int64_t>(bytes);
}

BytesOwner ReadWindow::Share() {
    return {m_buffer->Hold().release(),
            [](void* buffer) { ReadBuffer::Release()(static_cast<ReadBuffer*>(buffer)); }};
}

} // namespace scenedetect
