// The decode loop: packets in, pictures out.
#pragma once

#include "reading/ffmpeg/FfmpegPointers.h"
#include "reading/ffmpeg/MediaFile.h"

#include <functional>
#include <string>

namespace scenedetect {

/// Decodes the video stream of a file. One thread at a time; the decoder has its own besides.
class VideoDecoder {
  public:
    /// The next packet; false at the end.
    using Source = std::function<bool(AVPacket&)>;
    /// Told of each packet that can't be decoded; decoding goes on.
    using Damaged = std::function<void()>;

    /// On as many threads (0: one a core). HostError when there is no such decoder.
    VideoDecoder(const MediaFile& file, int threads, Source source, Damaged damaged = {});

    /// The next picture in presentation order; false when there are no more.
    [[nodiscard]] bool Next(AVFrame& picture);
    /// Packets go on elsewhere in the file.
    void Flush();
    [[nodiscard]] std::string Name() const { return m_decoder->codec->name; }

  private:
    void Feed();
    void TellDamage() const {
        if (m_damaged)
            m_damaged();
    }

    const Source m_source;
    const Damaged m_damaged;
    const FfmpegPtr<AVCodecContext> m_decoder;
    const FfmpegPtr<AVPacket> m_packet = OwnFfmpeg(av_packet_alloc());
    bool m_isDraining = false;
};

} // namespace scenedetect
