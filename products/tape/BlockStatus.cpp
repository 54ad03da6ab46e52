#include "products/tape/BlockStatus.h"

#include "reading/dv/DvCheck.h"

namespace scenedetect {
namespace {

constexpr int kStatusShift = 4;

bool IsAnyBlockMarked(std::span<const std::uint8_t> sequence) {
    std::uint8_t marks = 0;
    for (int i = 0; i < kDifVideoBlocks; ++i) {
        const auto block = static_cast<std::size_t>(DifBlockInSequence(DifSection::Video, i));
        marks |= sequence[block * kDifBlockBytes + kDifStatusByte];
    }
    return marks >> kStatusShift != 0;
}

void Count(int status, BlockStatus& counts) {
    switch (status) {
    case 0:
        break;
    case 2:
    case 10:
        ++counts.fromPrevious;
        break;
    case 4:
    case 12:
        ++counts.fromNext;
        break;
    case 6:
    case 14:
        ++counts.unspecified;
        break;
    case 7:
    case 15:
        ++counts.errors;
        break;
    default:
        ++counts.reserved;
    }
}

} // namespace

BlockStatus& BlockStatus::operator+=(const BlockStatus& other) {
    fromPrevious += other.fromPrevious;
    fromNext += other.fromNext;
    unspecified += other.unspecified;
    errors += other.errors;
    reserved += other.reserved;
    return *this;
}

BlockStatus ReadBlockStatus(std::span<const std::uint8_t> frame) {
    BlockStatus counts;
    const auto sequences = static_cast<int>(frame.size() / kDifSequenceBytes);
    for (int i = 0; i < sequences; ++i) {
        const auto first = static_cast<std::size_t>(i) * kDifSequenceBytes;
        // Of nearly all sequences nothing more than this is read.
        if (!IsAnyBlockMarked(frame.subspan(first, kDifSequenceBytes)))
            continue;
        for (int block = i * kDifSequenceBlocks; block < (i + 1) * kDifSequenceBlocks; ++block) {
            const auto at = static_cast<std::size_t>(block) * kDifBlockBytes;
            if (IsDvBlockInPlace(frame, block) && SectionOfDifBlock(frame[at]) == DifSection::Video)
                Count(frame[at + kDifStatusByte] >> kStatusShift, counts);
        }
    }
    return counts;
}

} // namespace scenedetect
