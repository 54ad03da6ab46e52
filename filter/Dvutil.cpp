#include "filter/Dvutil.h"

#include "engine/Dif.h"
#include "support/DebugLog.h"

#include <cstddef>
#include <optional>

namespace scenedetect {
namespace {

constexpr std::uint8_t kTopBit = 0x80;

/// The four data bytes, without the flags beside the decimal digits.
std::uint32_t DataWord(DifPack pack) {
    constexpr std::uint32_t kDigits = 0x3F7F7F3F;
    const std::uint32_t word =
        pack[1] | pack[2] << 8 | pack[3] << 16 | static_cast<std::uint32_t>(pack[4]) << 24;
    return word & kDigits;
}

/// A byte of two decimal digits.
int Decimal(std::uint32_t word, int shift) {
    const auto byte = static_cast<int>(word >> shift & 0xFF);
    return byte % 16 + byte / 16 * 10;
}

void DecodeTime(std::uint32_t word, int& hours, int& minutes, int& seconds, int& frames) {
    frames = Decimal(word, 0);
    seconds = Decimal(word, 8);
    minutes = Decimal(word, 16);
    hours = Decimal(word, 24);
}

/// The first such pack of the whole frame.
std::optional<DifPack> FindPack(std::span<const std::uint8_t> frame, const DifPackArea& area,
                                std::uint8_t header) {
    for (const DifPack pack : DifPacks(frame, area, AnnouncedDifSequences(frame)))
        if (pack[0] == header)
            return pack;
    return std::nullopt;
}

} // namespace

bool Dvutil::GetTimeCodeInBCD(std::span<const std::uint8_t> frame, std::uint32_t& word, bool& flag) const {
    const std::optional<DifPack> pack = FindPack(frame, kSubcodePacks, kPackTimecode);
    if (!pack) {
        DebugPrint(L"Dvutil::GetTimeCodeInBCD: FAILED! ***\n");
        return false;
    }
    word = DataWord(*pack);
    flag = ((*pack)[1] & kTopBit) != 0;
    return true;
}

bool Dvutil::GetTimeCode(std::span<const std::uint8_t> frame, int& hours, int& minutes, int& seconds,
                         int& frames) const {
    std::uint32_t word = 0;
    bool flag = false;
    if (!GetTimeCodeInBCD(frame, word, flag))
        return false;
    DecodeTime(word, hours, minutes, seconds, frames);
    // Deliberate: timecode of four hours and more counts as unusable, 60 seconds do not.
    return frames <= 30 && seconds <= 60 && minutes <= 60 && hours <= 3;
}

bool Dvutil::GetRecordingTime(std::span<const std::uint8_t> frame, int& hours, int& minutes, int& seconds,
                              int& frames) const {
    const std::optional<DifPack> pack = FindPack(frame, kVauxPacks, kPackRecordingTime);
    if (!pack)
        return false;
    DecodeTime(DataWord(*pack), hours, minutes, seconds, frames);
    // Deliberate: nothing else is checked.
    constexpr int kNoFrames = 45; // all bits of the field set
    if (frames >= kNoFrames)
        frames = 0;
    return true;
}

bool Dvutil::GetDisplayAspect(std::span<const std::uint8_t> frame, double& ratio) const {
    std::optional<DifPack> sourceControl;
    for (const DifPack pack : DifPacks(frame, kVauxPacks, 1))
        if (pack[0] == kPackSourceControl)
            sourceControl = pack; // a later one replaces it
    if (!sourceControl)
        return false;
    constexpr std::uint8_t kDisplaySelect = 0x07;
    switch ((*sourceControl)[2] & kDisplaySelect) {
    case 0:
        ratio = 4.0 / 3;
        break;
    case 6:
        ratio = 14.0 / 9;
        break;
    default:
        ratio = 16.0 / 9;
    }
    return true;
}

} // namespace scenedetect
