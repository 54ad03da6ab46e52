// DV frames whose DIF blocks all bear their IDs, for what judges frames by these.
#pragma once

#include "engine/Dif.h"

#include <array>
#include <cstdint>
#include <vector>

namespace scenedetect::testing_support {

/// Appends a frame with the timecode 00:00:00:00 plus `timecode` frames (fewer than a minute's) in every
/// sequence, and with no recording time. Pictures and sound are `fill`.
inline void AppendDifFrame(std::vector<std::uint8_t>& stream, bool is625, int timecode,
                           std::uint8_t fill = 0) {
    const auto append = [&](DifSection section, int sequence, int number) {
        std::array<std::uint8_t, kDifBlockBytes> block;
        block.fill(fill);
        block[0] = static_cast<std::uint8_t>(static_cast<int>(section) << 5 | 0x1F);
        block[1] = static_cast<std::uint8_t>(sequence << 4 | 0x07);
        block[2] = static_cast<std::uint8_t>(number);
        if (section == DifSection::Header)
            block[3] = is625 ? 0xBF : 0x3F;
        if (section == DifSection::Header)
            block[4] = is625 ? 0xF8 : 0xF9;
        if (section == DifSection::Subcode) {
            const int rate = is625 ? 25 : 30;
            const auto decimal = [](int value) {
                return static_cast<std::uint8_t>(value / 10 * 16 + value % 10);
            };
            const std::array<std::uint8_t, 5> pack = {0x13, decimal(timecode % rate),
                                                      decimal(timecode / rate), 0, 0};
            std::copy(pack.begin(), pack.end(), block.begin() + 6);
        }
        stream.insert(stream.end(), block.begin(), block.end());
    };
    for (int sequence = 0; sequence < (is625 ? 12 : 10); ++sequence) {
        append(DifSection::Header, sequence, 0);
        for (int i = 0; i < 2; ++i)
            append(DifSection::Subcode, sequence, i);
        for (int i = 0; i < 3; ++i)
            append(DifSection::Vaux, sequence, i);
        for (int i = 0; i < 135; ++i) {
            if (i % 15 == 0)
                append(DifSection::Audio, sequence, i / 15);
            append(DifSection::Video, sequence, i);
        }
    }
}

} // namespace scenedetect::testing_support
