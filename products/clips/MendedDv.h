// DV frames as FFmpeg's libraries can follow them through damage.
#pragma once

#include "reading/dv/DvPacks.h"

#include <cstdint>
#include <optional>
#include <span>
#include <vector>

namespace scenedetect {

struct MendedDv {
    std::vector<std::uint8_t> bytes; ///< the whole frame
    bool isSilent = false;           ///< its audio was unusable
};

/// Those libraries go by a frame's first block, and lose track of the frames where that is damaged; and by
/// one of its audio source packs, without which the audio becomes shorter than the pictures. Both are mended
/// from their copies in the frame. Where none tells `format`, in which the audio of the frame should be,
/// silence takes its place. `frame` is whole; nothing when it needs no mending, or nothing can be done.
[[nodiscard]] std::optional<MendedDv> Mend(std::span<const std::uint8_t> frame, DvSystem system,
                                           const std::optional<DvAudioFormat>& format);

} // namespace scenedetect
