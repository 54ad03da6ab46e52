// One picture on its way from a reader to a sample: bytes, and whoever owns them.
#pragma once

#include "engine/Luminance.h"
#include "reading/dv/DvPacks.h"
#include "reading/readers/PictureFormat.h"
#include "reading/timing/SampleTable.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <span>

namespace scenedetect {

/// What keeps bytes alive, and the function that gives it back.
using BytesOwner = std::unique_ptr<void, void (*)(void*)>;

/// A holder that is filled again and again. The bytes are somebody else's, kept alive by their owner, or
/// those of a buffer of the holder's own, which is allocated once. One thread at a time.
class Picture {
  public:
    /// Makes `bytes` the picture, until the owner is let go.
    void Hold(std::span<std::uint8_t> bytes, BytesOwner owner);
    /// The holder's own buffer with room for `bytes`, 64-byte aligned, contents undefined. Allocates only
    /// when the buffer has to grow.
    [[nodiscard]] std::uint8_t* OwnBuffer(std::size_t bytes);
    /// Makes what lies there the picture, in place of bytes.
    void HoldRows(const PixelRows& rows, BytesOwner owner);
    /// Makes the first `bytes` of the own buffer the picture.
    void HoldOwnBuffer(std::size_t bytes);
    /// Lets the owner of borrowed bytes go; an own buffer stays for the next picture.
    void Clear();

    /// Valid until the next call of the above.
    [[nodiscard]] std::span<std::uint8_t> Bytes() const { return m_bytes; }
    /// Null unless it is held by its rows; then it has no bytes.
    [[nodiscard]] const PixelRows* Rows() const { return m_rows ? &*m_rows : nullptr; }
    /// The bytes as a DV frame, whose packs are read when that is first asked; null unless they are as many
    /// as one has.
    [[nodiscard]] const DvFrameInfo* Dv() const;
    /// Calls `call` for the bytes, or for the pixels of each row from the top.
    template <typename Call>
    void ForEachRun(Call call) const {
        if (!m_rows)
            return call(std::span<const std::uint8_t>(m_bytes));
        const auto bytes = static_cast<std::size_t>(m_rows->width * FactsOf(m_rows->layout).pixelPitch);
        for (std::ptrdiff_t y = 0; y < m_rows->height; ++y)
            call(std::span(m_rows->top + y * m_rows->stride, bytes));
    }

    FilePlace place;
    PictureFormat format;

  private:
    struct BufferDeleter {
        void operator()(std::uint8_t* buffer) const;
    };

    BytesOwner m_owner{nullptr, [](void*) {}};
    std::unique_ptr<std::uint8_t, BufferDeleter> m_ownBuffer;
    std::size_t m_ownBytes = 0;
    std::span<std::uint8_t> m_bytes;
    std::optional<PixelRows> m_rows;
    mutable std::optional<DvFrameInfo> m_dv; // once it was asked for
};

} // namespace scenedetect
