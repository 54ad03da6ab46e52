// One picture on its way from a reader to a sample: bytes, and whoever owns them.
#pragma once

#include "reading/readers/PictureFormat.h"
#include "reading/timing/SampleTable.h"

#include <cstdint>
#include <memory>
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
    /// Makes the first `bytes` of the own buffer the picture.
    void HoldOwnBuffer(std::size_t bytes);
    /// Lets the owner of borrowed bytes go; an own buffer stays for the next picture.
    void Clear();

    /// Valid until the next call of the above.
    [[nodiscard]] std::span<std::uint8_t> Bytes() const { return m_bytes; }

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
};

} // namespace scenedetect
