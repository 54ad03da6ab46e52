// What is wrong with a place of the input, as a plain record and as a line of text.
#pragma once

#include <cstdint>
#include <string>

namespace scenedetect {

enum class IrregularityKind {
    UnknownBytes,  ///< `bytes` that are no frame; none is counted for them
    Unreadable,    ///< `bytes` in the place of `frames` whole frames
    MissingBytes,  ///< `bytes` were lost from `frames` frames, none of which is handed out
    MissingFrames, ///< `frames` of which the file has nothing, by the timecode of their neighbours
    DamagedBlocks, ///< a frame that is handed out, `bytes` of which are in blocks without their ID
    CutEnd,        ///< the last frame, of which there are `bytes` only; not handed out
};

struct Irregularity {
    std::int64_t frame = 0;      ///< the first that it concerns, or the one that follows unknown bytes
    std::int64_t byteOffset = 0; ///< of its beginning
    std::int64_t bytes = 0;
    IrregularityKind kind = IrregularityKind::UnknownBytes;
    std::int64_t frames = 0; ///< how many are not handed out for it; they count all the same

    friend bool operator==(const Irregularity&, const Irregularity&) = default;
};

/// The end of a sentence about the file: "frame 14 at byte 2016000 is left out: 80 bytes of it are missing".
[[nodiscard]] std::string IrregularityText(const Irregularity& irregularity);

} // namespace scenedetect
