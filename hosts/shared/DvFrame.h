// DV frames as the host meets them: which line system they are, and where one begins.
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

/// Whether a header block of a frame's first sequence lies here.
[[nodiscard]] bool IsDvHeader(std::span<const std::uint8_t> data);

/// How many blocks, and bytes, it takes to tell the start of a frame.
inline constexpr std::size_t kDvStartBlocks = 8;
inline constexpr std::size_t kDvStartBytes = kDvStartBlocks * kDifBlockBytes;

/// Offset of the next place, from `from` on, where a frame begins beyond doubt: the first blocks of its first
/// sequence follow each other. Nothing when `data` holds no such place.
[[nodiscard]] std::optional<std::size_t> FindDvFrame(std::span<const std::uint8_t> data, std::size_t from);

} // namespace scenedetect
