#include "products/tape/TapeFrame.h"

#include "reading/dv/DvCheck.h"

namespace scenedetect {

std::optional<TapeFrame> ReadTapeFrame(const Picture& picture) {
    const auto bytes = picture.Bytes();
    if (bytes.size() != kDifFrameBytes525 && bytes.size() != kDifFrameBytes625)
        return std::nullopt;
    TapeFrame frame;
    frame.place = picture.place;
    frame.system = bytes.size() == kDifFrameBytes625 ? DvSystem::Lines625 : DvSystem::Lines525;
    frame.packs = ReadDvPacks(bytes, frame.system);
    frame.blocks = ReadBlockStatus(bytes);
    const DvCheck check = CheckDvFrame(bytes, frame.system);
    frame.damagedBlocks = check.blocks - check.goodBlocks;
    frame.firstDamaged = check.firstDamaged;
    return frame;
}

} // namespace scenedetect
