#include "reading/readers/ReadBlock.h"

namespace scenedetect {

void ReadBlock::Release::operator()(ReadBlock* block) const {
    if (block->holders.fetch_sub(1, std::memory_order_acq_rel) == 1)
        delete block;
}

ReadBlock::Holder ReadBlock::Hold() {
    holders.fetch_add(1, std::memory_order_relaxed);
    return Holder(this);
}

ReadBlock::Holder ReadBlockPool::Take() {
    for (const ReadBlock::Holder& block : m_blocks)
        if (block->holders.load(std::memory_order_acquire) == 1)
            return block->Hold();
    m_blocks.reserve(m_blocks.size() + 1);
    m_blocks.push_back((new ReadBlock)->Hold());
    return m_blocks.back()->Hold();
}

} // namespace scenedetect
