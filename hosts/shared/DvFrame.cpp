#include "hosts/shared/DvFrame.h"

namespace scenedetect {
namespace {

constexpr int SequencesOf(DvSystem system) {
    return system == DvSystem::Lines625 ? kDifSequences625 : kDifSequences525;
}

// Signal type in the VAUX source pack's PC3.
constexpr std::uint8_t kPackSource = 0x60;
constexpr std::uint8_t kSignalTypeBits = 0x1F;
constexpr std::uint8_t kSignalTypeDv50 = 4;

} // namespace

std::optional<DvSystem> AnnouncedDvSystem(std::span<const std::uint8_t> data) {
    int voters = 0;
    int for625 = 0;
    for (; voters < kDifSequences525; ++voters) {
        const std::size_t sequence = static_cast<std::size_t>(voters) * kDifSequenceBytes;
        if (sequence >= data.size())
            break;
        const int announced = AnnouncedDifSequences(data.subspan(sequence));
        if (announced == 0)
            break;
        for625 += announced == kDifSequences625 ? 1 : 0;
    }
    if (voters == 0)
        return std::nullopt;
    return for625 * 2 > voters ? DvSystem::Lines625 : DvSystem::Lines525;
}

std::optional<DvSystem> IdentifyDvFrame(std::span<const std::uint8_t> frame) {
    const auto system = AnnouncedDvSystem(frame);
    return system && frame.size() == DvFrameBytes(*system) ? system : std::nullopt;
}

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
    for (const DifPack pack : DifPacks(frame, kVauxPacks, SequencesOf(system))) {
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
