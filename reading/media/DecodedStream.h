// The video stream of a file on its way through a decoder.
#pragma once

#include "reading/ffmpeg/FfmpegPointers.h"
#include "reading/ffmpeg/VideoDecoder.h"
#include "reading/media/MediaInput.h"

#include <deque>
#include <memory>
#include <string>
#include <utility>

namespace scenedetect {

using PacketQueue = std::deque<FfmpegPtr<AVPacket>>;

/// One thread at a time; the decoder has its own besides.
class DecodedStream {
  public:
    /// Decodes `packets` first, then those that `input` goes on with, ahead of what is asked for. HostError
    /// when there is no decoder.
    DecodedStream(std::unique_ptr<MediaInput> input, PacketQueue packets, const Decoding& decoding,
                  VideoDecoder::Damaged damaged)
        : m_input(std::move(input)),
          m_packets(std::move(packets)),
          m_decoder(
              m_input->File(), Ahead(decoding), [this](AVPacket& packet) { return Read(packet); },
              std::move(damaged)) {}

    [[nodiscard]] MediaInput& Input() const { return *m_input; }
    [[nodiscard]] const VideoDecoder& Decoder() const { return m_decoder; }
    /// The next picture in presentation order; false at the end, and when the run is stopped.
    [[nodiscard]] bool Next(AVFrame& picture) {
        return m_decoder.Next(picture) && !m_input->File().IsStopped();
    }

  private:
    [[nodiscard]] static Decoding Ahead(Decoding decoding) {
        decoding.isAhead = true;
        return decoding;
    }
    [[nodiscard]] bool Read(AVPacket& packet) {
        if (m_packets.empty())
            return m_input->ReadPacket(packet);
        av_packet_move_ref(&packet, m_packets.front().get());
        m_packets.pop_front();
        return true;
    }

    const std::unique_ptr<MediaInput> m_input;
    PacketQueue m_packets;
    VideoDecoder m_decoder;
};

} // namespace scenedetect
