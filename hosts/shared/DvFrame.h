// DV frames as the host meets them: which line system they are, and how their luma and chroma are sampled.
#pragma once

#include "engine/Dif.h"

#include <cstdint>
#include <optional>
#include <span>

namespace scenedetect {

enum class DvSystem { Lines525, Lines625 };

[[nodiscard]] constexpr std::size_t DvFrameBytes(DvSystem system) {
    return system == DvSystem::Lines625 ? kDifFrameBytes625 : kDifFrameBytes525;
}

/// The line system that most of the first ten sequences announce, so that one damaged bit can't change it.
/// Looks at as many as `data` holds; nothing when that is not even one header.
[[nodiscard]] std::optional<DvSystem> AnnouncedDvSystem(std::span<const std::uint8_t> data);

/// The line system of one whole DV frame of 25 Mbit/s; nothing when size and header disagree.
[[nodiscard]] std::optional<DvSystem> IdentifyDvFrame(std::span<const std::uint8_t> frame);

/// What the stream is, beyond its line system (docs/dv.md names the fields).
enum class DvProfile {
    Dv25,      ///< 4:1:1 at 525 lines, 4:2:0 at 625
    Dv25Of411, ///< 4:1:1 at 625 lines: macroblocks lie elsewhere in the picture
    Dv50,      ///< 4:2:2: two halves of a frame's size after each other
};

/// The profile of one whole frame (or half of one, at 50 Mbit/s), as most of its headers and packs tell it.
[[nodiscard]] DvProfile ProfileOfDvFrame(std::span<const std::uint8_t> frame, DvSystem system);

} // namespace scenedetect
