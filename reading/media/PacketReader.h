// Hands out the packets of a stream as they are: DV frames in a container, uncompressed pictures.
#pragma once

#include "reading/ffmpeg/FfmpegPointers.h"
#include "reading/media/FrameClock.h"
#include "reading/media/MediaInput.h"
#include "reading/readers/DamageLog.h"
#include "reading/readers/PictureReader.h"

#include <memory>

namespace scenedetect {

class PacketReader final : public PictureReader {
  public:
    /// `first` is the stream's first packet, which is taken over, and `format` its format; `setup` tells how
    /// the stream's stamps are to be read.
    PacketReader(std::unique_ptr<MediaInput> input, AVPacket& first, const PictureFormat& format,
                 const FrameClock::Setup& setup, const DamageLog& damage);

    [[nodiscard]] const PictureFormat& Format() const override { return m_firstFormat; }
    [[nodiscard]] TimeScale Scale() const override { return m_clock.Scale(); }
    [[nodiscard]] MediaInfo Info() const override { return m_info; }
    [[nodiscard]] std::string Description() const override {
        return m_input->FormatName() + ", frames as they are";
    }
    [[nodiscard]] bool Next(Picture& picture) override;

  private:
    [[nodiscard]] bool ReadPacket();
    [[nodiscard]] bool IdentifyPacket(PictureFormat& format) const;

    const std::unique_ptr<MediaInput> m_input;
    const FfmpegPtr<AVPacket> m_packet = OwnFfmpeg(av_packet_alloc());
    bool m_isPending = true; // m_packet is still to be handed out
    const PictureFormat m_firstFormat;
    const bool m_isDv;
    FrameClock m_clock;
    MediaInfo m_info;
    DamageLog m_damage;
};

} // namespace scenedetect
