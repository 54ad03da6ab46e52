// Encodes the pictures of a clip with an encoder of FFmpeg's libraries.
#pragma once

#include "products/muxing/EncodeChoice.h"
#include "reading/ffmpeg/FfmpegPointers.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <string>

struct SwsContext;

namespace scenedetect {

class PacketSource;
struct Container;

/// What a stream tells besides its pictures.
struct EncoderSetup {
    std::string path; ///< of the source, for messages
    AVRational timeBase;
    AVRational rate; ///< frames per second
    AVRational pixelAspect{0, 1};
    AVFieldOrder fieldOrder = AV_FIELD_UNKNOWN;
};

/// Of pictures like this one of the source.
[[nodiscard]] EncoderSetup SetupOf(const PacketSource& source, const AVFrame& like);

/// One thread at a time; the encoder has its own besides.
class VideoEncoder {
  public:
    /// Takes a packet over, in the encoder's time base.
    using Sink = std::function<void(AVPacket&)>;

    /// For pictures like this one, of which only the properties count: size, format, colours. They are kept,
    /// as is what the setup tells; a format that the encoder does not have is converted to the nearest.
    /// HostError when the encoder can't be opened.
    VideoEncoder(const EncodeChoice& choice, EncoderSetup setup, const AVFrame& like,
                 const Container& container);
    ~VideoEncoder();
    VideoEncoder(const VideoEncoder&) = delete;
    VideoEncoder& operator=(const VideoEncoder&) = delete;

    [[nodiscard]] const AVCodecContext& Context() const { return *m_encoder; }
    /// "pictures are converted from yuv422p10le to yuv420p"; mostly empty.
    [[nodiscard]] std::string Note() const;

    /// `time` is in the time base of the source's video stream. HostError when the encoder refuses the
    /// picture.
    void Encode(const AVFrame& picture, std::int64_t time, const Sink& sink);
    /// There are no more: what the encoder still has comes out.
    void Finish(const Sink& sink) { Send(nullptr, sink); }

  private:
    [[nodiscard]] int Open(const EncodeChoice& choice, const AVFrame& like, const Container& container,
                           AVRational timeBase);
    [[nodiscard]] FfmpegPtr<AVFrame> Convert(const AVFrame& picture);
    void Send(const AVFrame* picture, const Sink& sink);

    const EncoderSetup m_setup;
    const AVPixelFormat m_sourceFormat;
    FfmpegPtr<AVCodecContext> m_encoder;
    SwsContext* m_scaler = nullptr;
    const FfmpegPtr<AVPacket> m_packet = OwnFfmpeg(av_packet_alloc());
    std::int64_t m_lastTime = INT64_MIN; // in the encoder's time base
};

} // namespace scenedetect
