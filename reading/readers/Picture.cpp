#include "reading/readers/Picture.h"

#include <new>
#include <utility>

namespace scenedetect {
namespace {

constexpr std::align_val_t kBlockAlignment{64};

} // namespace

void Picture::BlockDeleter::operator()(std::uint8_t* block) const {
    ::operator delete(block, kBlockAlignment);
}

void Picture::Hold(std::span<std::uint8_t> bytes, BytesOwner owner) {
    m_owner = std::move(owner);
    m_bytes = bytes;
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
    m_owner.reset();
    m_bytes = {};
}

} // namespace scenedetect
