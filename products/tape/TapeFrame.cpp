#include "products/tape/TapeFrame.h"

#include "reading/dv/DvCheck.h"

namespace scenedetect {

std::optional<TapeFrame> ReadTapeFrame(const Picture& picture) {
    const DvFrameInfo* info = picture.Dv();
    if (!info)
        return std::nullopt;
    const auto bytes = picture.Bytes();
    TapeFrame frame{*info, picture.place, ReadBlockStatus(bytes), {}};
    if (info->packs.audio)
        frame.audio = ReadAudioStatus(bytes, info->system, *info->packs.audio);
    const DvCheck check = CheckDvFrame(bytes, info->system);
    frame.damagedBlocks = check.blocks - check.goodBlocks;
    frame.firstDamaged = check.firstDamaged;
    return frame;
}

} // namespace scenedetect
