// Decodes a stream, whose pictures are announced as YUY2 and held by the rows of their luma.
#pragma once

#include "reading/ffmpeg/FfmpegPointers.h"
#include "reading/media/DecodedStream.h"
#include "reading/media/FrameClock.h"
#include "reading/media/LumaLayout.h"
#include "reading/media/MediaInput.h"
#include "reading/readers/DamageLog.h"
#include "reading/readers/PictureReader.h"

#include <memory>

namespace scenedetect {

class DecodedReader final : public PictureReader {
  public:
    /// `first` is the stream's first packet, which is taken over. HostError when nothing can be decoded.
    DecodedReader(std::unique_ptr<MediaInput> input, AVPacket& first, const DamageLog& damage,
                  const Decoding& decoding);

    [[nodiscard]] const PictureFormat& Format() const override { return m_format; }
    [[nodiscard]] TimeScale Scale() const override { return m_clock.Scale(); }
    [[nodiscard]] MediaInfo Info() const override { return m_info; }
    [[nodiscard]] std::string Description() const override;
    [[nodiscard]] std::string Shortcut() const override { return m_stream->Decoder().Shortcut(); }
    [[nodiscard]] bool Next(Picture& picture) override;
    [[nodiscard]] std::int64_t PassOver(const IsWanted& isWanted) override;

  private:
    [[nodiscard]] MediaInput& Input() const { return m_stream->Input(); }
    void ReportDamage();

    const Decoding m_decoding;
    DamageLog m_damage;
    std::unique_ptr<DecodedStream> m_stream;
    FrameClock m_clock;
    FfmpegPtr<AVFrame> m_frame = OwnFfmpeg(av_frame_alloc());
    bool m_isFramePending = false; // m_frame is still to be handed out
    std::int64_t m_lastFrame = 0;
    std::int64_t m_lastStamp = 0; // as decoded
    std::unique_ptr<LumaLayout> m_layout;
    PictureFormat m_format;
    MediaInfo m_info;
};

} // namespace scenedetect
