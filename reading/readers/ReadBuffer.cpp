#include "reading/readers/ReadBuffer.h"

namespace scenedetect {

void ReadBuffer::Release::operator()(ReadBuffer* buffer) const {
    if (buffer->holders.fetch_sub(1, std::memory_order_acq_rel) == 1)
        delete buffer;
}

ReadBuffer::Holder ReadBuffer::Hold() {
    holders.fetch_add(1, std::memory_order_relaxed);
    return Holder(this);
}

ReadBuffer::Holder ReadBufferPool::Take() {
    for (const ReadBuffer::Holder& buffer : m_buffers)
        if (buffer->holders.load(std::memory_order_acquire) == 1)
            return buffer->Hold();
    m_buffers.reserve(m_buffers.size() + 1);
    m_buffers.push_back((new ReadBuffer)->Hold());
    return m_buffers.back()->Hold();
}

} // namespace scenedetect
