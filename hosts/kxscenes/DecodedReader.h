// Decodes a stream and lays its pictures out as YUY2.
#pragma once

#include "hosts/kxscenes/FfmpegPointers.h"
#include "hosts/kxscenes/FrameClock.h"
#include "hosts/kxscenes/LumaLayout.h"
#include "hosts/kxscenes/MediaInput.h"
#include "hosts/shared/DamageLog.h"
#include "hosts/shared/PictureReader.h"

#include <memory>

namespace scenedetect {

/// The decoder works on all cores; laying out happens on the caller's thread.
class DecodedReader final : public PictureReader {
  public:
    /// `first` is the stream's first packet, which is taken over. HostError when nothing can be decoded.
    DecodedReader(std::unique_ptr<MediaInput> input, AVPacket& first, const DamageLog& damage);

    [[nodiscard]] const PictureFormat& Format() const override { return m_format; }
    [[nodiscard]] TimeScale Scale() const override { return m_clock.Scale(); }
    [[nodiscard]] bool Next(Picture& picture) override;

  private:
    void OpenDecoder();
    [[nodiscard]] bool Decode();
    void FeedDecoder();
    void ReportDamage();

    const std::unique_ptr<MediaInput> m_input;
    FrameClock m_clock;
    DamageLog m_damage;
    const FfmpegPtr<AVPacket> m_packet = OwnFfmpeg(av_packet_alloc());
    bool m_isPacketPending = true; // m_packet is still to be decoded
    bool m_isDraining = false;
    FfmpegPtr<AVCodecContext> m_decoder;
    const FfmpegPtr<AVFrame> m_frame = OwnFfmpeg(av_frame_alloc());
    bool m_isFramePending = false; // m_frame is still to be handed out
    std::int64_t m_lastFrame = 0;
    std::unique_ptr<LumaLayout> m_layout;
    PictureFormat m_format;
};

} // namespace scenedetect
