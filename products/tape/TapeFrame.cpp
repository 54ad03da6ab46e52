#include "products/tape/TapeFrame.h"

#include "reading/dv/DvCheck.h"

namespace scenedetect {

std::optional<TapeFrame> ReadTapeFrame(const Picture& picture) {
    const auto bytes = picture.Bytes();
    const auto system = DvSystemOfSize(bytes.size());
    if (!system)
        return std::nullopt;
    TapeFrame frame;
    frame.place = picture.place;
    frame.system = *system;
    frame.packs = ReadDvPacks(bytes, frame.system);
    frame.blocks = ReadBlockStatus(bytes);
    if (frame.packs.audio)
        frame.audio = ReadAudioStatus(bytes, *system, *frame.packs.audio);
    const DvCheck check = CheckDvFrame(bytes, frame.system);
    frame.damagedBlocks = check.blocks - check.goodBlocks;
    frame.firstDamaged = check.firstDamaged;
    return frame;
}

} // namespace scenedetect
