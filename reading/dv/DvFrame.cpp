#include "reading/dv/DvFrame.h"

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
    for (std::size_t at = kTrackByte; at < frame.size(); at += kDifSequenceBytes) {
        ++voters;
        forSmpte += (frame[at] & kApplicationBits) == kApplicationSmpte ? 1 : 0;
    }
    if (forSmpte * 2 <= voters)
        return DvProfile::Dv25;
    int packs = 0;
    int forDv50 = 0;
    for (const DifPack pack : DifPacks(frame, kVauxPacks, DvSequences(system))) {
        if (pack[0] != kPackSource)
            continue;
        ++packs;
        forDv50 += (pack[3] & kSignalTypeBits) == kSignalTypeDv50 ? 1 : 0;
    }
    if (forDv50 * 2 > packs)
        return DvProfile::Dv50;
    return system == DvSystem::Lines625 ? DvProfile::Dv25Of411 : DvProfile::Dv25;
}

} // namespace scenedetect
