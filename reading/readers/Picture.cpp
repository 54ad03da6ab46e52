#include "reading/readers/Picture.h"

#include <new>
#include <utility>

namespace scenedetect {
namespace {

constexpr std::align_val_t kBufferAlignment{64};

} // namespace

void Picture::BufferDeleter::operator()(std::uint8_t* buffer) const {
    ::operator delete(buffer, kBufferAlignment);
}

void Picture::Hold(std::span<std::uint8_t> bytes, BytesOwner owner) {
    m_owner = std::move(owner);
    m_bytes = bytes;
    m_dv.reset();
}

void Picture::HoldRows(const PixelRows& rows, BytesOwner owner) {
    m_owner = std::move(owner);
    m_rows = rows;
}

std::uint8_t* Picture::OwnBuffer(std::size_t bytes) {
    if (m_ownBytes < bytes) {
        m_ownBuffer.reset(static_cast<std::uint8_t*>(::operator new(bytes, kBufferAlignment)));
        m_ownBytes = bytes;
    }
    return m_ownBuffer.get();
}

void Picture::HoldOwnBuffer(std::size_t bytes) {
    m_bytes = {m_ownBuffer.get(), bytes};
    m_dv.reset();
}

void Picture::Clear() {
    m_owner.reset();
    m_bytes = {};
    m_rows.reset();
    m_dv.reset();
}

const DvFrameInfo* Picture::Dv() const {
    if (!m_dv)
        if (const auto system = DvSystemOfSize(m_bytes.size()))
            m_dv = {*system, ReadDvPacks(m_bytes, *system)};
    return m_dv ? &*m_dv : nullptr;
}

} // namespace scenedetect
