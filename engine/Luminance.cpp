#include "engine/Luminance.h"

#include "engine/BitmapHeader.h"
#include "engine/Dib.h"
#include "engine/kernels/Simd.h"
#include "platform/CpuFeatures.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstdlib>
#include <cstring>
#include <vector>

namespace scenedetect {
namespace {

constexpr DWORD kYuy2 = MAKEFOURCC('Y', 'U', 'Y', '2');
constexpr DWORD kUyvy = MAKEFOURCC('U', 'Y', 'V', 'Y');
constexpr DWORD kI420 = MAKEFOURCC('I', '4', '2', '0');
constexpr DWORD kYv12 = MAKEFOURCC('Y', 'V', '1', '2');
constexpr DWORD kIyuv = MAKEFOURCC('I', 'Y', 'U', 'V');

constexpr int kMaxPixelStep = 3;
constexpr std::uint32_t kPaletteEntries = 256;

using PaletteSums = std::array<std::uint16_t, kPaletteEntries + 1>; // see BlockRow

bool HasMasks(const Dib& frame, DWORD red, DWORD green, DWORD blue) {
    return frame.GetCompression() == BI_BITFIELDS && frame.GetMask(0) == red && frame.GetMask(1) == green &&
           frame.GetMask(2) == blue;
}

PaletteSums SumPalette(const Dib& frame) {
    PaletteSums sums{};
    for (std::uint32_t i = 0; i < kPaletteEntries; ++i) {
        const RGBQUAD colour = frame.GetColour(i);
        sums[i] = static_cast<std::uint16_t>(colour.rgbBlue + colour.rgbGreen + colour.rgbRed);
    }
    return sums;
}

/// Where a reader finds its blocks: offsets in bytes from the start of the pixel data.
struct Walk {
    int rows;    ///< block rows, in the order of the samples
    int columns; ///< blocks in each of them
    std::int64_t first = 0;
    std::int64_t nextRow;   ///< from one block row to the next
    std::int64_t rowStride; ///< from one pixel row of a block to its next
    // Blocks beyond these have no address.
    std::int64_t rowsInPicture;
    std::int64_t columnsInPicture;
};

Walk WalkPacked(const LuminanceGrid& grid, const LayoutFacts& facts) {
    // Deliberate: one contiguous run, whatever width, row padding and orientation the header tells.
    const std::int64_t stride = std::int64_t{grid.width} * grid.blockSize * facts.pixelPitch;
    return {.rows = grid.height,
            .columns = grid.width,
            .nextRow = stride * grid.blockSize,
            .rowStride = stride,
            .rowsInPicture = grid.height,
            .columnsInPicture = grid.width};
}

Walk WalkPlanar(const LuminanceGrid& grid) {
    // Deliberate: width and height change places, so a wide picture is read into its chroma planes and only
    // in its left part.
    const std::int64_t stride = std::int64_t{grid.width} * grid.blockSize;
    return {.rows = grid.width,
            .columns = grid.height,
            .nextRow = stride * grid.blockSize,
            .rowStride = stride,
            .rowsInPicture = grid.width,
            .columnsInPicture = grid.height};
}

/// Of rows that are `down` bytes apart, the top one at `first`.
Walk WalkRows(std::int64_t first, std::int64_t down, std::int64_t width, std::int64_t height,
              const LuminanceGrid& grid, PixelLayout layout, const LayoutFacts& facts) {
    // From the end of a block's row to the start of its next, as pixel addresses tell it.
    std::int64_t rowStep = down - std::int64_t{grid.blockSize} * facts.pixelPitch;
    // Deliberate: with 16 bits per pixel the step counts pixels, not bytes, and so skips every other row.
    if (layout == PixelLayout::Rgb565 || layout == PixelLayout::Rgb555)
        rowStep *= 2;
    return {.rows = grid.height,
            .columns = grid.width,
            .first = first,
            .nextRow = down * grid.blockSize,
            .rowStride = rowStep + std::int64_t{grid.blockSize} * facts.pixelStep,
            .rowsInPicture = (height + grid.blockSize - 1) / grid.blockSize,
            .columnsInPicture = (width + grid.blockSize - 1) / grid.blockSize};
}

Walk WalkFor(const Dib& frame, const LuminanceGrid& grid, PixelLayout layout, const LayoutFacts& facts) {
    const std::int64_t width = std::max<std::int64_t>(frame.GetInfo()->biWidth, 0);
    const std::int64_t height = RowCount(*frame.GetInfo());
    const bool isYuv =
        layout == PixelLayout::Yuy2 || layout == PixelLayout::Uyvy || layout == PixelLayout::Planar;
    if (isYuv && grid.isUpright)
        return WalkRows(0, width * facts.pixelPitch, width, height, grid, layout, facts);
    switch (layout) {
    case PixelLayout::Yuy2:
    case PixelLayout::Uyvy:
        return WalkPacked(grid, facts);
    case PixelLayout::Planar:
        return WalkPlanar(grid);
    default:
        return WalkRows(frame.RowOffset(0), frame.RowOffset(1) - frame.RowOffset(0), width, height, grid,
                        layout, facts);
    }
}

/// Sums the blocks of one block row, fast where all their bytes exist.
class RowReader {
  public:
    /// `shift` is for Luma16, `palette` for Palette8.
    RowReader(std::span<const std::uint8_t> bytes, PixelLayout layout, std::int32_t blockSize,
              std::int64_t rowStride, int shift, const PaletteSums& palette)
        : m_bits(bytes.data()),
          m_extent(static_cast<std::int64_t>(bytes.size())),
          m_blockSize(blockSize),
          m_rowStride(rowStride),
          m_blockPitch(std::int64_t{blockSize} * FactsOf(layout).pixelPitch),
          m_runBytes(std::int64_t{blockSize} * FactsOf(layout).pixelStep),
          m_reference(ScalarBlockSums(layout)),
          m_fast(SelectBlockSums(layout, blockSize, CpuFeatures())),
          m_shift(shift),
          m_palette(palette),
          m_emptySum(palette[0] * static_cast<std::uint32_t>(blockSize) *
                     static_cast<std::uint32_t>(blockSize)) {}

    /// What a block without any bytes sums up to: with a palette, its first colour.
    [[nodiscard]] std::uint32_t EmptySum() const { return m_emptySum; }

    void Sum(std::int64_t offset, int blocks, std::uint32_t* sums) const {
        const std::int64_t travel = (m_blockSize - 1) * m_rowStride;
        const std::int64_t begin = offset + std::min<std::int64_t>(travel, 0);
        const std::int64_t end =
            offset + std::max<std::int64_t>(travel, 0) + (blocks - 1) * m_blockPitch + m_runBytes;
        if (begin >= 0 && end <= m_extent) {
            m_fast({m_bits + offset, static_cast<std::ptrdiff_t>(m_rowStride), blocks, m_blockSize,
                    m_blockSize, m_palette.data(), m_shift},
                   sums);
        } else if (end <= 0 || begin >= m_extent) {
            std::fill_n(sums, blocks, m_emptySum);
        } else if (blocks > 1) {
            for (int block = 0; block < blocks; ++block)
                Sum(offset + block * m_blockPitch, 1, sums + block);
        } else {
            *sums = SumChecked(offset);
        }
    }

  private:
    /// One block, of which some bytes do not exist.
    [[nodiscard]] std::uint32_t SumChecked(std::int64_t offset) const {
        std::array<std::uint8_t, std::size_t{kMaxPixelStep} * kMaxBlockSize> run;
        std::uint32_t total = 0;
        for (int y = 0; y < m_blockSize; ++y, offset += m_rowStride) {
            const std::int64_t begin = std::clamp<std::int64_t>(offset, 0, m_extent);
            const std::int64_t end = std::clamp<std::int64_t>(offset + m_runBytes, begin, m_extent);
            std::memset(run.data(), 0, static_cast<std::size_t>(m_runBytes));
            if (begin < end)
                std::memcpy(run.data() + (begin - offset), m_bits + begin,
                            static_cast<std::size_t>(end - begin));
            std::uint32_t sum = 0;
            m_reference({run.data(), 0, 1, m_blockSize, 1, m_palette.data(), m_shift}, &sum);
            total += sum;
        }
        return total;
    }

    const std::uint8_t* m_bits;
    std::int64_t m_extent;
    std::int32_t m_blockSize;
    std::int64_t m_rowStride;
    std::int64_t m_blockPitch;
    std::int64_t m_runBytes;
    BlockSums m_reference;
    BlockSums m_fast;
    int m_shift;
    PaletteSums m_palette;
    std::uint32_t m_emptySum;
};

/// Shifts, and divisions by a constant, are several times faster; nearly all divisors have one.
void Divide(const std::vector<std::uint32_t>& sums, std::uint32_t divisor, std::uint8_t* samples) {
    const auto divide = [&](auto quotient) {
        std::ranges::transform(sums, samples, [quotient](std::uint32_t sum) {
            return static_cast<std::uint8_t>(quotient(sum));
        });
    };
    constexpr std::uint32_t kRgb = 3 * kSimdBlockSize * kSimdBlockSize;
    if (std::has_single_bit(divisor))
        divide([shift = std::countr_zero(divisor)](std::uint32_t sum) { return sum >> shift; });
    else if (divisor == kRgb)
        divide([](std::uint32_t sum) { return sum / kRgb; });
    else
        divide([divisor](std::uint32_t sum) { return sum / divisor; });
}

bool IsReadable(const LuminanceGrid& grid) {
    return grid.width > 0 && grid.height > 0 && grid.blockSize >= 1 && grid.blockSize <= kMaxBlockSize;
}

void ReadBlocks(const RowReader& reader, const Walk& walk, std::uint32_t divisor, std::uint8_t* samples) {
    const auto columns = static_cast<int>(std::min<std::int64_t>(walk.columns, walk.columnsInPicture));
    std::vector<std::uint32_t> sums(static_cast<std::size_t>(walk.columns), reader.EmptySum());
    for (int row = 0; row < walk.rows; ++row) {
        if (row < walk.rowsInPicture && columns > 0)
            reader.Sum(walk.first + row * walk.nextRow, columns, sums.data());
        else
            std::fill(sums.begin(), sums.end(), reader.EmptySum());
        Divide(sums, divisor, samples);
        samples += walk.columns;
    }
}

/// Values summed in one block.
std::uint32_t DivisorOf(const LayoutFacts& facts, const LuminanceGrid& grid) {
    return static_cast<std::uint32_t>(facts.components * grid.blockSize * grid.blockSize);
}

} // namespace

std::optional<PixelLayout> LayoutOf(const Dib& frame) {
    if (frame.GetInfo() == nullptr)
        return std::nullopt;
    const DWORD compression = frame.GetCompression();
    switch (compression) {
    case kYuy2:
        return PixelLayout::Yuy2;
    case kUyvy:
        return PixelLayout::Uyvy;
    case kI420:
    case kYv12:
    case kIyuv:
        return PixelLayout::Planar;
    default:
        break;
    }
    switch (frame.PixelSize()) {
    case 3:
        return PixelLayout::Rgb24;
    case 4:
        return PixelLayout::Rgb32;
    case 1:
        return PixelLayout::Palette8;
    default:
        break;
    }
    // Deliberate: plain 16-bit RGB is 5-5-5 by its definition, but the 5-6-5 reading takes it first.
    if (compression == BI_RGB || HasMasks(frame, 0xF800, 0x07E0, 0x001F))
        return PixelLayout::Rgb565;
    if (HasMasks(frame, 0x7C00, 0x03E0, 0x001F))
        return PixelLayout::Rgb555;
    return std::nullopt;
}

void ReadLuminance(const Dib& frame, PixelLayout layout, const LuminanceGrid& grid, std::uint8_t* samples) {
    if (frame.GetInfo() == nullptr || !IsReadable(grid))
        return;
    const LayoutFacts facts = FactsOf(layout);
    const Walk walk = WalkFor(frame, grid, layout, facts);
    const RowReader reader({frame.GetBits(), frame.GetBitsExtent()}, layout, grid.blockSize, walk.rowStride,
                           0, layout == PixelLayout::Palette8 ? SumPalette(frame) : PaletteSums{});
    ReadBlocks(reader, walk, DivisorOf(facts, grid), samples);
}

void ReadLuminance(const PixelRows& picture, const LuminanceGrid& fullGrid, std::uint8_t* samples) {
    const LuminanceGrid grid{fullGrid.width, fullGrid.height, fullGrid.blockSize >> picture.halvings};
    if (!IsReadable(grid))
        return;
    const LayoutFacts facts = FactsOf(picture.layout);
    const std::ptrdiff_t toLast = (picture.height - 1) * picture.stride;
    const auto bytes =
        static_cast<std::size_t>(std::abs(toLast) + std::ptrdiff_t{picture.width} * facts.pixelPitch);
    const std::ptrdiff_t first = std::max<std::ptrdiff_t>(-toLast, 0);
    const Walk walk =
        WalkRows(first, picture.stride, picture.width, picture.height, grid, picture.layout, facts);
    const RowReader reader({picture.top - first, bytes}, picture.layout, grid.blockSize, walk.rowStride,
                           picture.shift, {});
    ReadBlocks(reader, walk, DivisorOf(facts, grid), samples);
}

} // namespace scenedetect
