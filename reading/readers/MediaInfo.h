// What a reader knows of its file beside the pictures.
#pragma once

#include "reading/dv/DvFrame.h"
#include "reading/timing/TimeScale.h"

#include <cstdint>
#include <optional>
#include <span>
#include <string>

namespace scenedetect {

/// The timecode of the file's first frame.
struct SourceTimecode {
    std::int64_t frame = 0; ///< real frames since 00:00:00:00, of the timecode's own rate
    bool isDropFrame = false;
    std::int32_t framesPerSecond = 25; ///< of the timecode, above 0; half the file's in some cameras' files
};

struct AudioFormat {
    int channels = 2;
    int sampleRate = 48'000;
};

struct MediaInfo {
    bool isRawDv = false; ///< a stream of DV frames and nothing else, read by their structure
    int width = 0;        ///< 0: unknown
    int height = 0;
    Ratio pixelAspect{1, 1};
    int quarterTurns = 0;             ///< clockwise, that stand the pictures upright: 0 to 3
    std::int64_t delay = 0;           ///< microseconds from the start of the file to its first picture
    std::optional<AudioFormat> audio; ///< of the first audio stream
    std::optional<SourceTimecode> startTimecode;
};

/// From timecode as containers write it, HH:MM:SS:FF with any marks between, the last being ";" or "." with
/// drop-frame. Nothing for any other text.
[[nodiscard]] std::optional<SourceTimecode> ParseSourceTimecode(const std::string& text, Ratio rate);

/// What a whole DV frame tells of its stream.
[[nodiscard]] MediaInfo DvMediaInfo(std::span<const std::uint8_t> frame, DvSystem system);

} // namespace scenedetect
