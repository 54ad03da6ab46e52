// Makes the time stamps of packets fit to cut by: they go on where streams were joined, and are all there.
#pragma once

extern "C" {
#include <libavformat/avformat.h>
}

#include <cstdint>
#include <span>
#include <vector>

namespace scenedetect {

/// One thread at a time.
class PacketStamps {
  public:
    /// `streams`: the video stream, then others. `mayJump`: the file may have been joined.
    PacketStamps(std::span<AVStream* const> streams, AVRational rate, bool mayJump);

    /// Corrects the stamps of the next packet of a stream. A missing decoding time of the video is set to
    /// when it was to be expected; its PTS stays missing where pictures are reordered.
    void Correct(AVPacket& packet, int stream);

  private:
    struct Track {
        AVRational timeBase;
        int delay;          // packets that the decoder has before the first picture comes out
        std::int64_t frame; // its usual duration
        std::int64_t expected = AV_NOPTS_VALUE; // corrected stamp of the next packet
    };

    static void FillIn(AVPacket& packet, const Track& video);
    [[nodiscard]] std::int64_t OffsetFor(const Track& track, std::int64_t stamp, bool isVideo);

    const bool m_mayJump;
    std::vector<Track> m_tracks;
    // Added to stamps, in the video's time base. Other streams of a joined file come to the joint sooner or
    // later.
    std::int64_t m_offset = 0;
    std::int64_t m_offsetBefore = 0;
};

} // namespace scenedetect
