// One picture on its way from a reader to a sample: bytes, and whoever owns them.
#pragma once

#include "hosts/kxscenes/FfmpegPointers.h"
#include "hosts/kxscenes/SampleTable.h"

#include <windows.h>

#include <cstdint>
#include <memory>
#include <span>

namespace scenedetect {

/// How the bytes of a picture are to be read: the fields of its bitmap header, and the rate.
struct PictureFormat {
    DWORD fourcc = 0; ///< biCompression; 0 is RGB
    LONG width = 0;
    LONG height = 0; ///< negative: the top row comes first (RGB only)
    WORD bitCount = 0;
    std::uint32_t imageBytes = 0;
    std::int64_t frameDuration = 0; ///< 100 ns

    friend bool operator==(const PictureFormat&, const PictureFormat&) = default;
};

/// A holder that is filled again and again. The bytes are those of a packet, kept alive by a reference, or of
/// a block of the holder's own, which is allocated once. One thread at a time.
class Picture {
  public:
    /// Takes the packet over; `packet` is blank afterwards.
    void HoldPacket(AVPacket& packet);
    /// The holder's own block with room for `bytes`, 64-byte aligned, contents undefined. Allocates only when
    /// the block has to grow.
    [[nodiscard]] std::uint8_t* OwnBlock(std::size_t bytes);
    /// Makes the first `bytes` of the own block the picture.
    void HoldOwnBlock(std::size_t bytes);
    /// Gives a packet back to its owner; an own block stays for the next picture.
    void Clear();

    /// Valid until the next call of the above.
    [[nodiscard]] std::span<std::uint8_t> Bytes() const { return m_bytes; }

    FilePlace place;
    PictureFormat format;

  private:
    struct BlockDeleter {
        void operator()(std::uint8_t* block) const;
    };

    FfmpegPtr<AVPacket> m_packet = OwnFfmpeg(av_packet_alloc());
    std::unique_ptr<std::uint8_t, BlockDeleter> m_block;
    std::size_t m_blockBytes = 0;
    std::span<std::uint8_t> m_bytes;
};

} // namespace scenedetect
