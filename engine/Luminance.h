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
    bool isUpright = false; ///< YUV frames are read as their pictures lie, row after row
};

/// The largest block whose sums fit into 32 bits for every layout.
inline constexpr std::int32_t kMaxBlockSize = 2048;

/// The rows of a picture, wherever they lie in memory. All bytes from the first row's first to the last row's
/// last exist, those between two rows included.
struct PixelRows {
    PixelLayout layout;      ///< not Palette8
    const std::uint8_t* top; ///< the first byte of the picture's top row
    std::ptrdiff_t stride;   ///< bytes from a row to the one below; negative when the picture lies bottom-up
    std::int32_t width;      ///< in pixels, above 0
    std::int32_t height;
    int shift = 0;    ///< for Luma16, see BlockRow
    int halvings = 0; ///< 0 to 3: how often its sides were halved, and those of the blocks are to be
};

/// How `frame` is read: by its FourCC, then by its pixel size and masks. Nothing for an unknown format.
[[nodiscard]] std::optional<PixelLayout> LayoutOf(const Dib& frame);

/// Writes width x height samples: the truncated mean of each block's luma bytes, or of its blue, green and
/// red values alike. Bytes outside the picture's data count as 0. Nothing is written for an empty grid or
/// a block size outside 1 to kMaxBlockSize. Throws std::bad_alloc.
void ReadLuminance(const Dib& frame, PixelLayout layout, const LuminanceGrid& grid, std::uint8_t* samples);
/// Likewise of rows, block by block from the top left in every layout; `grid` is that of the picture before
/// its sides were halved.
void ReadLuminance(const PixelRows& picture, const LuminanceGrid& grid, std::uint8_t* samples);

} // namespace scenedetect
