// DV frames for tests, made from their structure: header flag, packs, DC bytes.
#pragma once

#include "engine/Dif.h"

#include <cstdint>
#include <vector>

namespace scenedetect::testing_support {

struct TimeOfDay {
    int hours = 0;
    int minutes = 0;
    int seconds = 0;
    int frames = 0;
};

/// A frame of the line system whose blocks are otherwise all 0xFF (no packs).
class DvFrame {
  public:
    explicit DvFrame(bool is625 = true) : m_bytes(is625 ? kDifFrameBytes625 : kDifFrameBytes525, 0xFF) {
        m_bytes[3] = is625 ? 0x80 : 0x00;
    }

    DvFrame& Timecode(const TimeOfDay& time, int sequence = 0) {
        return Pack(kSubcodePacks, kPackTimecode, time, sequence);
    }
    DvFrame& RecordingTime(const TimeOfDay& time, int sequence = 0) {
        return Pack(kVauxPacks, kPackRecordingTime, time, sequence);
    }
    /// Every luminance block of the picture gets this DC byte (128 is level 0).
    DvFrame& Luma(std::uint8_t dcByte) {
        for (std::size_t block = 0; block * kDifBlockBytes < m_bytes.size(); ++block)
            if (block % 150 >= 7 && (block % 150 - 6) % 16 != 0)
                for (const std::size_t offset : {4u, 18u, 32u, 46u})
                    m_bytes[block * kDifBlockBytes + offset] = dcByte;
        return *this;
    }
    DvFrame& Cut(std::size_t bytes) {
        m_bytes.resize(bytes);
        return *this;
    }
    [[nodiscard]] const std::vector<std::uint8_t>& Bytes() const { return m_bytes; }

  private:
    static std::uint8_t Bcd(int value) { return static_cast<std::uint8_t>(value / 10 * 16 + value % 10); }

    DvFrame& Pack(const DifPackArea& area, std::uint8_t id, const TimeOfDay& time, int sequence) {
        std::uint8_t* pack = &m_bytes[area.Offset(sequence * area.PacksPerSequence())];
        pack[0] = id;
        pack[1] = Bcd(time.frames);
        pack[2] = Bcd(time.seconds);
        pack[3] = Bcd(time.minutes);
        pack[4] = Bcd(time.hours);
        return *this;
    }

    std::vector<std::uint8_t> m_bytes;
};

} // namespace scenedetect::testing_support
