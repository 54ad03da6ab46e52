// Sums over square blocks of pixels, a row of blocks at a time: what every luminance reader comes down to.
#pragma once

#include <cstddef>
#include <cstdint>

namespace scenedetect {

enum class PixelLayout { Yuy2, Uyvy, Planar, Rgb24, Rgb32, Palette8, Rgb565, Rgb555, Luma16 };

struct LayoutFacts {
    int pixelPitch; ///< bytes from one pixel to the next where blocks begin
    int pixelStep;  ///< the same within a row of a block
    int components; ///< values summed per pixel
};
[[nodiscard]] LayoutFacts FactsOf(PixelLayout layout);

/// Blocks side by side. Of every block, `rows` rows of `pixels` pixels are read; all must be readable.
struct BlockRow {
    const std::uint8_t* bits; ///< the first block's first byte
    std::ptrdiff_t rowStride; ///< bytes from one row of a block to its next
    int blocks;
    int pixels;
    int rows;
    const std::uint16_t* paletteSums; ///< for Palette8: blue + green + red of each of the 256 indices, and
                                      ///< a word that may be read
    int shift =
        0; ///< for Luma16, 0 to 8: of each word in the machine's byte order the 8 bits from here on count
};

/// Writes one sum for each block: of its luma bytes, or of its blue, green and red values. Sums wrap at 32
/// bits.
using BlockSums = void (*)(const BlockRow& row, std::uint32_t* sums);

/// The reference, for blocks of any size.
[[nodiscard]] BlockSums ScalarBlockSums(PixelLayout layout);

/// The fastest for square blocks of `blockSize` on a processor with `cpuFeatures` (platform/CpuFeatures.h).
[[nodiscard]] BlockSums SelectBlockSums(PixelLayout layout, int blockSize, unsigned cpuFeatures);

} // namespace scenedetect
