#include "hosts/kxscenes/Picture.h"

#include <new>

namespace scenedetect {
namespace {

constexpr std::align_val_t kBlockAlignment{64};

} // namespace

void Picture::BlockDeleter::operator()(std::uint8_t* block) const {
    ::operator delete(block, kBlockAlignment);
}

void Picture::HoldPacket(AVPacket& packet) {
    av_packet_unref(m_packet.get());
    av_packet_move_ref(m_packet.get(), &packet);
    m_bytes = {m_packet->data, static_cast<std::size_t>(m_packet->size)};
}

std::uint8_t* Picture::OwnBlock(std::size_t bytes) {
    if (m_blockBytes < bytes) {
        m_block.reset(static_cast<std::uint8_t*>(::operator new(bytes, kBlockAlignment)));
        m_blockBytes = bytes;
    }
    return m_block.get();
}

void Picture::HoldOwnBlock(std::size_t bytes) {
    m_bytes = {m_block.get(), bytes};
}

void Picture::Clear() {
    av_packet_unref(m_packet.get());
    m_bytes = {};
}

} // namespace scenedetect
