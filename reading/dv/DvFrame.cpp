#include "reading/dv/DvFrame.h"

#include "reading/dv/DvCheck.h"

namespace scenedetect {
namespace {

// Signal type in the VAUX source pack's PC3.
constexpr std::uint8_t kPackSource = 0x60;
constexpr std::uint8_t kSignalTypeBits = 0x1F;
constexpr std::uint8_t kSignalTypeDv50 = 4;

} // namespace

DvProfile ProfileOfDvFrame(std::span<const std::uint8_t> frame, DvSystem system) {
    constexpr std::size_t kTrackByte = 4;
    constexpr std::uint8_t kApplicationBits = 0x07; // APT: 0 is IEC 61834, 1 is SMPTE 314M
    constexpr std::uint8_t kApplicationSmpte = 1;
    int voters = 0;
    int forSmpte = 0;
    for (int sequence = 0; sequence < DvSequences(system); ++sequence) {
        if (!IsDvBlockInPlace(frame, sequence * kDifSequenceBlocks))
            continue;
        ++voters;
        const std::uint8_t track = frame[static_cast<std::size_t>(sequence) * kDifSequenceBytes + kTrackByte];
        forSmpte += (track & kApplicationBits) == kApplicationSmpte ? 1 : 0;
    }
    if (forSmpte * 2 <= voters)
        return DvProfile::Dv25;
    int packs = 0;
    int forDv50 = 0;
    for (const DifPack pack : DifPacks(frame, kVauxPacks, DvSequences(system))) {
        const auto block = static_cast<int>((pack.data() - frame.data()) / kDifBlockBytes);
        if (pack[0] != kPackSource || !IsDvBlockInPlace(frame, block))
            continue;
        ++packs;
        forDv50 += (pack[3] & kSignalTypeBits) == kSignalTypeDv50 ? 1 : 0;
    }
    if (forDv50 * 2 > packs)
        return DvProfile::Dv50;
    return system == DvSystem::Lines625 ? DvProfile::Dv25Of411 : DvProfile::Dv25;
}

} // namespace scenedetect
