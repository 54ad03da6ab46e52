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
/// those of a block of the holder's own, which is allocated once. One thread at a time.
class Picture {
  public:
    /// Makes `bytes` the picture, until the owner is let go.
    void Hold(std::span<std::uint8_t> bytes, BytesOwner owner);
    /// The holder's own block with room for `bytes`, 64-byte aligned, contents undefined. Allocates only when
    /// the block has to grow.
    [[nodiscard]] std::uint8_t* OwnBlock(std::size_t bytes);
    /// Makes the first `bytes` of the own block the picture.
    void HoldOwnBlock(std::size_t bytes);
    /// Lets the owner of foreign bytes go; an own block stays for the next picture.
    void Clear();

    /// Valid until the next call of the above.
    [[nodiscard]] std::span<std::uint8_t> Bytes() const { return m_bytes; }

    FilePlace place;
    PictureFormat format;

  private:
    struct BlockDeleter {
        void operator()(std::uint8_t* block) const;
    };

    BytesOwner m_owner{nullptr, [](void*) {}};
    std::unique_ptr<std::uint8_t, BlockDeleter> m_block;
    std::size_t m_blockBytes = 0;
    std::span<std::uint8_t> m_bytes;
};

} // namespace scenedetect
