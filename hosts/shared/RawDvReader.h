// Reads raw DV streams, frame by frame, whatever line system each frame is.
#pragma once

#include "hosts/shared/ByteInput.h"
#include "hosts/shared/DamageLog.h"
#include "hosts/shared/DvFrame.h"
#include "hosts/shared/PictureReader.h"

#include <cstdint>
#include <memory>
#include <span>
#include <vector>

namespace scenedetect {

/// Joined captures of both line systems are one stream. Bytes that are no DV are stepped over; the frames
/// that were in their place count.
class RawDvReader final : public PictureReader {
  public:
    RawDvReader(std::unique_ptr<ByteInput> input, const DamageLog& damage);

    [[nodiscard]] const PictureFormat& Format() const override { return m_firstFormat; }
    [[nodiscard]] TimeScale Scale() const override;
    [[nodiscard]] bool Next(Picture& picture) override;

  private:
    [[nodiscard]] bool ReadFrame(Picture& picture);
    [[nodiscard]] std::size_t Fill(std::uint8_t* block, std::size_t have, std::size_t wanted);
    void Carry(std::span<const std::uint8_t> bytes);
    [[nodiscard]] bool FindNextFrame(std::span<const std::uint8_t> data, bool isEnd);
    void CountLostFrames();

    const std::unique_ptr<ByteInput> m_input;
    DamageLog m_damage;
    PictureFormat m_firstFormat;
    Ratio m_rate;

    DvSystem m_system = DvSystem::Lines625; // of the frame before
    std::vector<std::uint8_t> m_carried;    // read already, belongs to what comes next
    std::int64_t m_skipped = 0;             // bytes stepped over since the frame before
    FilePlace m_next;
};

} // namespace scenedetect
