// Hands out the frames of an AVI file as they are: DV, and uncompressed pictures of all kinds.
#pragma once

#include "reading/readers/AviReader.h"
#include "reading/readers/DamageLog.h"
#include "reading/readers/PictureReader.h"

#include <memory>
#include <optional>

namespace scenedetect {

class AviPictures final : public PictureReader {
  public:
    /// HostError when there is no picture of a kind that needs no decoder.
    AviPictures(std::shared_ptr<ByteInput> input, const DamageLog& damage);

    [[nodiscard]] const PictureFormat& Format() const override { return m_firstFormat; }
    [[nodiscard]] TimeScale Scale() const override { return {m_rate.Inverse(), m_rate}; }
    [[nodiscard]] MediaInfo Info() const override { return m_info; }
    [[nodiscard]] std::string Description() const override { return "AVI, frames as they are"; }
    [[nodiscard]] bool Next(Picture& picture) override;

  private:
    [[nodiscard]] bool ReadFrame(const AviReader::Frame& frame, Picture& picture);

    const std::shared_ptr<ByteInput> m_input;
    AviReader m_reader;
    DamageLog m_damage;
    const std::optional<PictureFormat> m_uncompressed; // none: DV, each frame of which tells its format
    Picture m_first;                                   // of DV, read already
    bool m_isFirstPending = false;
    PictureFormat m_firstFormat;
    Ratio m_rate;
    MediaInfo m_info;
};

} // namespace scenedetect
