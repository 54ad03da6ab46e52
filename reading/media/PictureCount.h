// The pictures of a stream as its packets tell them, without decoding.
#pragma once

extern "C" {
#include <libavcodec/avcodec.h>
}

#include <cstddef>
#include <cstdint>
#include <limits>
#include <map>
#include <optional>

namespace scenedetect {

/// Packets come in the order of decoding, pictures in that of their stamps. One thread.
class PictureCount {
  public:
    struct Told {
        std::int64_t stamp;
        std::int64_t byteOffset; ///< -1 when the container does not tell

        friend bool operator==(const Told&, const Told&) = default;
    };

    /// Whether it is one of the codecs of which each packet makes one picture, and which forget all that was
    /// before at a key frame.
    [[nodiscard]] static bool IsPossible(AVCodecID codec);

    explicit PictureCount(AVCodecID codec) : m_codec(codec) {}

    /// The next packet. False when nobody can tell what comes of it: it has no stamp, or none that fits
    /// those before it, or it is damaged.
    [[nodiscard]] bool Add(const AVPacket& packet);
    /// There are no more packets.
    void End() { m_reordered = 0; }
    /// The next picture, once no further packet can come before it.
    [[nodiscard]] std::optional<Told> Next();

  private:
    // More than any codec of these has.
    static constexpr std::size_t kMostReordered = 32;
    static constexpr std::int64_t kNone = std::numeric_limits<std::int64_t>::min();

    const AVCodecID m_codec;
    std::size_t m_reordered = kMostReordered;
    std::map<std::int64_t, std::int64_t> m_waiting; // by stamp: byte offsets
    std::int64_t m_latest = kNone;                  // stamp of all packets
    std::int64_t m_told = kNone;                    // stamp of the last picture told
};

} // namespace scenedetect
