// DV frames as the host meets them: their line systems, and how their luma and chroma are sampled.
#pragma once

#include "engine/Dif.h"

#include <cstdint>
#include <optional>
#include <span>

namespace scenedetect {

enum class DvSystem { Lines525, Lines625 };

[[nodiscard]] constexpr int DvLines(DvSystem system) {
    return system == DvSystem::Lines625 ? 625 : 525;
}

[[nodiscard]] constexpr int DvSequences(DvSystem system) {
    return system == DvSystem::Lines625 ? kDifSequences625 : kDifSequences525;
}

/// A unit in which the frames of both line systems have whole lengths.
inline constexpr int kDvTicksPerSecond = 30000;
[[nodiscard]] constexpr std::int64_t DvFrameTicks(DvSystem system) {
    return system == DvSystem::Lines625 ? 1200 : 1001;
}

[[nodiscard]] constexpr std::size_t DvFrameBytes(DvSystem system) {
    return system == DvSystem::Lines625 ? kDifFrameBytes625 : kDifFrameBytes525;
}

/// Of the two sizes that whole frames have; nothing for another.
[[nodiscard]] constexpr std::optional<DvSystem> DvSystemOfSize(std::size_t bytes) {
    for (const DvSystem system : {DvSystem::Lines525, DvSystem::Lines625})
        if (bytes == DvFrameBytes(system))
            return system;
    return std::nullopt;
}

/// What the stream is, beyond its line system (docs/dv.md names the fields).
enum class DvProfile {
    Dv25,      ///< 4:1:1 at 525 lines, 4:2:0 at 625
    Dv25Of411, ///< 4:1:1 at 625 lines: macroblocks lie elsewhere in the picture
    Dv50,      ///< 4:2:2: two halves of a frame's size after each other
};

/// The profile of one whole frame (or half of one, at 50 Mbit/s), as most of its headers and packs tell it
/// that are in their places.
[[nodiscard]] DvProfile ProfileOfDvFrame(std::span<const std::uint8_t> frame, DvSystem system);

} // namespace scenedetect
