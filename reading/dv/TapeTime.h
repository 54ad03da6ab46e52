// What time it is on the tape: by which gaps in a capture are measured.
#pragma once

#include "reading/dv/DvFrame.h"

#include <cstdint>
#include <optional>
#include <span>

namespace scenedetect {

/// The timecode as a count of real frames, and the recording time in seconds of the day, of one DV frame;
/// each where the frame has a valid one.
struct TapeTime {
    DvSystem system = DvSystem::Lines525;
    std::optional<std::int64_t> frames;
    std::optional<std::int64_t> recorded;
};

/// `frame` is whole; the copies of a pack in it vote.
[[nodiscard]] TapeTime TapeTimeOf(std::span<const std::uint8_t> frame, DvSystem system);

/// How many frames `later` is after `earlier` (1: the very next), by timecode; nothing when one lacks it,
/// when it goes backward or stands, or when the recording time moves otherwise, so that this is another
/// recording.
[[nodiscard]] std::optional<std::int64_t> FramesApart(const TapeTime& earlier, const TapeTime& later);

} // namespace scenedetect
