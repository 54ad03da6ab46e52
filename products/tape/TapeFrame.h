// What the tape log needs to know of one frame.
#pragma once

#include "products/tape/AudioStatus.h"
#include "products/tape/BlockStatus.h"
#include "reading/dv/DvPacks.h"
#include "reading/readers/Picture.h"

#include <cstdint>
#include <optional>

namespace scenedetect {

struct TapeFrame : DvFrameInfo {
    FilePlace place;
    BlockStatus blocks;
    AudioStatus audio;
    int damagedBlocks = 0;
    int firstDamaged = 0; ///< number of the first of them
};

/// Nothing for what is not a whole frame of 25 Mbit/s.
[[nodiscard]] std::optional<TapeFrame> ReadTapeFrame(const Picture& picture);

} // namespace scenedetect
