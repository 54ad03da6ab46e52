#include "engine/DvDcImage.h"

#include "engine/Dif.h"

#include <algorithm>
#include <cstddef>
#include <optional>

namespace scenedetect {
namespace {

constexpr int kSuperblockColumns = 5;

/// A macroblock of a superblock row.
struct Pick {
    int column; ///< superblock column
    int number; ///< 0 to 26 within the superblock
};

/// Three macroblock rows: a superblock runs down its first column, up its second, and so on.
constexpr Pick Pick625(int row, int column) {
    const int inner = column % 9;
    const int q = row % 3;
    return {column / 9, 3 * inner + (inner % 2 == 0 ? q : 2 - q)};
}

/// Six macroblock rows. Superblocks 0, 2 and 4 leave half of their fifth column to superblocks 1 and 3, which
/// begin there; the square blocks at the right edge, half as wide and twice as high, stand for two rows each.
constexpr Pick Pick525(int row, int column) {
    constexpr int kLastColumn = 22;
    constexpr int kFirstEdgeBlock = 24;
    const int q = row % 6;
    if (column == kLastColumn)
        return {4, kFirstEdgeBlock + q / 2};
    constexpr int kPairColumns = 9;
    const int inPair = column % kPairColumns;
    const int pair = column / kPairColumns * 2;
    const auto run = [q](int start, bool down) { return start + (down ? q : 5 - q); };
    if (inPair < 4)
        return {pair, run(6 * inPair, inPair % 2 == 0)};
    if (inPair == 4)
        return q < 3 ? Pick{pair, kFirstEdgeBlock + q} : Pick{pair + 1, q - 3};
    return {pair + 1, run(6 * (inPair - 5) + 3, inPair % 2 == 0)};
}

/// One line system: its macroblocks, and where they are stored.
struct LineSystem {
    int sequences;
    int rows;    ///< of macroblocks
    int columns; ///< of macroblocks
    int superblockRows;
    int firstSequence[kSuperblockColumns]; ///< of the superblock at row 0, by superblock column
    Pick (*pick)(int row, int column);
    std::size_t tableStart[2]; ///< by variant
};

constexpr LineSystem k525{kDifSequences525, 60, 23, 6, {0, 4, 8, 2, 6}, Pick525, {0, 3000}};
constexpr LineSystem k625{kDifSequences625, 36, 45, 3, {0, 6, 10, 4, 8}, Pick625, {1380, 4380}};

/// Five video blocks in a row belong to the five superblock columns: which of the five is a column's.
constexpr int kSegmentPosition[kSuperblockColumns] = {3, 1, 0, 2, 4};

/// Variant 0 leaves the header block of each sequence out.
constexpr int BlocksLeftOut(int variant) {
    return 1 - variant;
}

constexpr int SequenceBlocks(int variant) {
    return kDifSequenceBlocks - BlocksLeftOut(variant);
}

std::size_t NeededBytes(const LineSystem& system, int variant) {
    return static_cast<std::size_t>(system.sequences * SequenceBlocks(variant)) * kDifBlockBytes;
}

std::uint32_t BlockOffset(const LineSystem& system, int variant, int row, int column) {
    const Pick pick = system.pick(row, column);
    const int sequence = (row / system.superblockRows + system.firstSequence[pick.column]) % system.sequences;
    const int videoBlock = kSuperblockColumns * pick.number + kSegmentPosition[pick.column];
    const int block = sequence * SequenceBlocks(variant) + DifBlockInSequence(DifSection::Video, videoBlock) -
                      BlocksLeftOut(variant);
    return static_cast<std::uint32_t>(block) * static_cast<std::uint32_t>(kDifBlockBytes);
}

/// The sum of the four luminance blocks' levels. Each begins with the upper eight bits of its signed DC
/// coefficient, which is the block's mean level less 128.
unsigned MacroblockLevel(std::span<const std::uint8_t> frame, std::uint32_t offset) {
    constexpr std::size_t kDcOffsets[] = {4, 18, 32, 46};
    unsigned sum = 0;
    // Deliberate: with the sign bit turned round, a byte of 128 is the lowest level and one of 127 the
    // highest.
    for (const std::size_t dc : kDcOffsets)
        sum += (frame[offset + dc] - 128u) & 0xFF;
    return sum;
}

/// Level sums by place in the table; columns beyond the last run on into the next row.
class Levels {
  public:
    Levels(std::span<const std::uint8_t> frame, const std::uint32_t* offsets, int columns)
        : m_frame(frame), m_offsets(offsets), m_columns(columns) {}
    unsigned operator()(int row, int column) const {
        return MacroblockLevel(m_frame, m_offsets[row * m_columns + column]);
    }

  private:
    std::span<const std::uint8_t> m_frame;
    const std::uint32_t* m_offsets;
    int m_columns;
};

void Sample625(const Levels& level, int variant, std::uint8_t* pixels) {
    // Deliberate: row 35 is never read, variant 0 is not averaged, and 23 samples are written for each row
    // of 22, so that every row of the picture begins one sample later than the one above.
    constexpr int kLastRow = 34;
    constexpr int kLastColumn = 44;
    const int shift = variant == 1 ? 4 : 2;
    for (int row = 0; row <= kLastRow; row += 2) {
        const int below = std::min(row + 1, kLastRow);
        for (int column = 0; column <= kLastColumn; column += 2) {
            const int right = std::min(column + 1, kLastColumn);
            const unsigned sum =
                level(row, column) + level(row, right) + level(below, column) + level(below, right);
            *pixels++ = static_cast<std::uint8_t>(sum >> shift);
        }
    }
}

void Sample525(const Levels& level, int variant, std::uint8_t* pixels) {
    // Deliberate: variant 0 averages four neighbours in a row, not in a column, and for the last columns
    // takes some of the next row.
    const int down = variant == 1 ? 1 : 0;
    const int right = 1 - down;
    for (int row = 0; row < 60; row += 4) {
        for (int column = 0; column < 22; ++column) {
            unsigned sum = 0;
            for (int i = 0; i < 4; ++i)
                sum += level(row + i * down, column + i * right);
            *pixels++ = static_cast<std::uint8_t>(sum >> 4);
        }
    }
}

struct Size {
    int width;
    int height;
    int bytesPerPixel;
};

std::optional<Size> SizeOf(int mode, bool isPal) {
    switch (mode) {
    case 0:
        return Size{90, isPal ? 72 : 60, 3};
    case 1:
        return Size{90, isPal ? 72 : 60, 1};
    case 2:
        return Size{22, isPal ? 18 : 15, 1};
    default:
        return std::nullopt;
    }
}

} // namespace

DvDcImage::DvDcImage() {
    for (const LineSystem* system : {&k525, &k625})
        for (int variant = 0; variant < 2; ++variant)
            for (int row = 0; row < system->rows; ++row)
                for (int column = 0; column < system->columns; ++column)
                    m_offsets[system->tableStart[variant] +
                              static_cast<std::size_t>(row * system->columns + column)] =
                        BlockOffset(*system, variant, row, column);
}

GridPlaces DvDcImage::Places(bool isPal) {
    constexpr std::int32_t kCell = 32; // two macroblocks of 625 lines; one wide and four high of 525
    return isPal ? GridPlaces{720, 576, kCell, 23, 22 * 18} : GridPlaces{720, 480, kCell, 22, 22 * 15};
}

std::unique_ptr<DcImage> DvDcImage::Create(int mode, bool isPal, int variant,
                                           std::span<const std::uint8_t> frame) const {
    const std::optional<Size> size = SizeOf(mode, isPal);
    if (!size || variant < 0 || variant > 1)
        return nullptr;
    auto image = std::make_unique<DcImage>();
    image->width = size->width;
    image->height = size->height;
    if (frame.data() == nullptr)
        return image;
    const LineSystem& system = isPal ? k625 : k525;
    if (mode != 2 || frame.size() < NeededBytes(system, variant))
        return nullptr;

    // Room for alignment, and for the samples that one of the pictures has too many.
    constexpr std::size_t kAlignment = 32;
    constexpr std::size_t kSpareBytes = 128;
    std::size_t room =
        static_cast<std::size_t>(size->width * size->height * size->bytesPerPixel) + kSpareBytes;
    image->raw = std::make_unique<std::uint8_t[]>(room);
    void* pixels = image->raw.get();
    image->pixels = static_cast<std::uint8_t*>(std::align(kAlignment, 1, pixels, room));
    const Levels level(frame, m_offsets.data() + system.tableStart[variant], system.columns);
    if (isPal)
        Sample625(level, variant, image->pixels);
    else
        Sample525(level, variant, image->pixels);
    return image;
}

} // namespace scenedetect
