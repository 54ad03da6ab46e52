#include "hosts/shared/ReadWindow.h"

#include <algorithm>
#include <atomic>
#include <cstring>

namespace scenedetect {
namespace {

// Four frames of 625 lines: few calls, and still a size that stays in a processor's cache.
// What was dropped last goes before them.
constexpr std::size_t kBlockBytes = ReadWindow::kBackBytes + 4 * kDifFrameBytes625;
static_assert(ReadWindow::kMostBytes + ReadWindow::kBackBytes <= kBlockBytes);

} // namespace

struct ReadWindow::Block {
    std::atomic<int> holders = 1; // the pool, and each piece
    alignas(64) std::uint8_t bytes[kBlockBytes];
};

void ReadWindow::Release(void* block) {
    auto* const held = static_cast<Block*>(block);
    if (held->holders.fetch_sub(1, std::memory_order_acq_rel) == 1)
        delete held;
}

ReadWindow::~ReadWindow() {
    for (Block* block : m_blocks)
        Release(block);
}

ReadWindow::Block& ReadWindow::FreeBlock() {
    for (Block* block : m_blocks)
        if (block != m_block && block->holders.load(std::memory_order_acquire) == 1)
            return *block;
    m_blocks.reserve(m_blocks.size() + 1);
    m_blocks.push_back(new Block);
    return *m_blocks.back();
}

std::span<std::uint8_t> ReadWindow::Have(std::size_t bytes, std::size_t unit) {
    const std::size_t have = m_end - m_begin;
    if (have < bytes) {
        if (!m_block || m_begin + bytes > kBlockBytes) {
            Block& next = FreeBlock();
            if (m_block) {
                const std::size_t back = std::min(m_begin, kBackBytes);
                std::memcpy(next.bytes + kBackBytes - back, m_block->bytes + m_begin - back, back + have);
            }
            m_block = &next;
            m_begin = kBackBytes;
            m_end = m_begin + have;
        }
        const std::size_t room = kBlockBytes - m_begin;
        const std::size_t wanted = std::max(bytes, room / unit * unit) - have;
        m_end += m_input.ReadSome({m_block->bytes + m_end, wanted}, bytes - have);
    }
    return {m_block->bytes + m_begin, m_end - m_begin};
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
    m_block->holders.fetch_add(1, std::memory_order_relaxed);
    return {m_block, Release};
}

} // namespace scenedetect
