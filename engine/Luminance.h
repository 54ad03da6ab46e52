// Reducing a picture to a small grid of luminance samples, one for each square block of pixels.
#pragma once

#include "engine/kernels/BlockSums.h"

#include <cstdint>
#include <optional>

namespace scenedetect {

class Dib;

/// Width and height in samples, and the side of a block in pixels.
struct LuminanceGrid {
    std::int32_t width;
    std::int32_t height;
    std::int32_t blockSize;
};

/// The largest block whose sums fit into 32 bits for every layout.
inline constexpr std::int32_t kMaxBlockSize = 2048;

/// How `frame` is read: by its FourCC, then by its pixel size and masks. Nothing for an unknown format.
[[nodiscard]] std::optional<PixelLayout> LayoutOf(const Dib& frame);

/// Writes width x height samples: the truncated mean of each block's luma bytes, or of its blue, green and
/// red values alike. Bytes outside the picture's data count as 0. Nothing is written for an empty grid or
/// a block size outside 1 to kMaxBlockSize. Throws std::bad_alloc.
void ReadLuminance(const Dib& frame, PixelLayout layout, const LuminanceGrid& grid, std::uint8_t* samples);

} // namespace scenedetect
