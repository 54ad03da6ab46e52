// Counts the audio samples of a DV frame that the playing deck could not read.
#pragma once

#include "reading/dv/DvPacks.h"

#include <cstdint>
#include <span>

namespace scenedetect {

/// By the code that stands for such samples (IEC 61834-2, SMPTE 314M): 0x8000 of 16 bits, 0x800 of 12.
struct AudioStatus {
    std::int64_t errors = 0; ///< in channels that have other samples, too
    bool isMuted = false;    ///< a channel has nothing else: the recorder or the deck has muted it

    friend bool operator==(const AudioStatus&, const AudioStatus&) = default;
};

/// Of a whole frame with audio in `format`. Samples that lie beyond the frame's own count, channels that are
/// marked as not recorded, blocks that lack the ID of their place, and 20 bits are left out.
[[nodiscard]] AudioStatus ReadAudioStatus(std::span<const std::uint8_t> frame, DvSystem system,
                                          const DvAudioFormat& format);

} // namespace scenedetect
