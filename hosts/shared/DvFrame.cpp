#include "hosts/shared/DvFrame.h"

#include <array>

namespace scenedetect {
namespace {

// Header, two subcode and three VAUX blocks, the first audio and the first video block.
constexpr std::array<DifSection, kDvStartBlocks> kFirstSections = {
    DifSection::Header, DifSection::Subcode, DifSection::Subcode, DifSection::Vaux,
    DifSection::Vaux,   DifSection::Vaux,    DifSection::Audio,   DifSection::Video};

// The sequence's number lies in the upper half of the second ID byte.
bool IsBlockOfFirstSequence(std::span<const std::uint8_t> block, DifSection section) {
    return SectionOfDifBlock(block[0]) == section && block[1] >> 4 == 0;
}

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

bool IsDvHeader(std::span<const std::uint8_t> data) {
    // The reserved bits of an ID are ones: zeroed blocks, which the rest fits too, are no headers.
    constexpr std::uint8_t kReservedBits = 0x07;
    return data.size() >= kDifBlockBytes && IsBlockOfFirstSequence(data, DifSection::Header) &&
           (data[1] & kReservedBits) != 0 && data[2] == 0;
}

std::optional<std::size_t> FindDvFrame(std::span<const std::uint8_t> data, std::size_t from) {
    for (std::size_t at = from; at + kDvStartBytes <= data.size(); ++at) {
        bool isStart = IsDvHeader(data.subspan(at));
        for (std::size_t i = 1; isStart && i < kFirstSections.size(); ++i)
            isStart = IsBlockOfFirstSequence(data.subspan(at + i * kDifBlockBytes), kFirstSections[i]);
        if (isStart)
            return at;
    }
    return std::nullopt;
}

} // namespace scenedetect
