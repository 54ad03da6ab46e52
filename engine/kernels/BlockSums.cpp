#include "engine/kernels/BlockSums.h"

#include "engine/kernels/Simd.h"

#include <cstring>

namespace scenedetect {
namespace {

std::uint32_t Word(const std::uint8_t* p) {
    return p[0] | static_cast<std::uint32_t>(p[1]) << 8;
}

/// Deliberate: luminance is the plain mean of the components, without the weights of a colour space.
std::uint32_t SumOfThree(const std::uint8_t* p) {
    return static_cast<std::uint32_t>(p[0]) + p[1] + p[2];
}

struct Yuy2 {
    static constexpr LayoutFacts kFacts{2, 2, 1};
    static std::uint32_t Value(const std::uint8_t* p, const BlockRow&) { return p[0]; }
};

struct Uyvy {
    static constexpr LayoutFacts kFacts{2, 2, 1};
    static std::uint32_t Value(const std::uint8_t* p, const BlockRow&) { return p[1]; }
};

struct Planar {
    static constexpr LayoutFacts kFacts{1, 1, 1};
    static std::uint32_t Value(const std::uint8_t* p, const BlockRow&) { return p[0]; }
};

struct Rgb24 {
    static constexpr LayoutFacts kFacts{3, 3, 3};
    static std::uint32_t Value(const std::uint8_t* p, const BlockRow&) { return SumOfThree(p); }
};

struct Rgb32 {
    // Deliberate: within a block, four-byte pixels are read as if they were three bytes wide.
    static constexpr LayoutFacts kFacts{4, 3, 3};
    static std::uint32_t Value(const std::uint8_t* p, const BlockRow&) { return SumOfThree(p); }
};

struct Palette8 {
    static constexpr LayoutFacts kFacts{1, 1, 3};
    static std::uint32_t Value(const std::uint8_t* p, const BlockRow& row) { return row.paletteSums[*p]; }
};

struct Rgb565 {
    static constexpr LayoutFacts kFacts{2, 2, 3};
    static std::uint32_t Value(const std::uint8_t* p, const BlockRow&) {
        const std::uint32_t v = Word(p);
        return (v & 0x1F) * 8 + ((v & 0x07E0) >> 3) + ((v & 0xF800) >> 8);
    }
};

struct Rgb555 {
    static constexpr LayoutFacts kFacts{2, 2, 3};
    static std::uint32_t Value(const std::uint8_t* p, const BlockRow&) {
        const std::uint32_t v = Word(p);
        return (v & 0x1F) * 8 + ((v & 0x03E0) >> 2) + ((v & 0x7C00) >> 7);
    }
};

struct Luma16 {
    static constexpr LayoutFacts kFacts{2, 2, 1};
    static std::uint32_t Value(const std::uint8_t* p, const BlockRow& row) {
        std::uint16_t word = 0;
        std::memcpy(&word, p, sizeof word);
        return static_cast<std::uint8_t>(word >> row.shift);
    }
};

/// `side` of square blocks, for the compiler to unroll; 0: as the row says.
template <typename Pixel, int side = 0>
void SumScalar(const BlockRow& row, std::uint32_t* sums) {
    const int pixels = side != 0 ? side : row.pixels;
    const int rows = side != 0 ? side : row.rows;
    const std::ptrdiff_t blockPitch = std::ptrdiff_t{pixels} * Pixel::kFacts.pixelPitch;
    for (int block = 0; block < row.blocks; ++block) {
        std::uint32_t sum = 0;
        for (int y = 0; y < rows; ++y) {
            const std::uint8_t* p = row.bits + block * blockPitch + y * row.rowStride;
            for (int x = 0; x < pixels; ++x)
                sum += Pixel::Value(p + std::ptrdiff_t{x} * Pixel::kFacts.pixelStep, row);
        }
        sums[block] = sum;
    }
}

struct Reference {
    LayoutFacts facts;
    BlockSums sums;
};

template <typename Pixel>
constexpr Reference kReferenceOf{Pixel::kFacts, SumScalar<Pixel>};

/// In the order of PixelLayout.
constexpr Reference kReferences[] = {kReferenceOf<Yuy2>,   kReferenceOf<Uyvy>,   kReferenceOf<Planar>,
                                     kReferenceOf<Rgb24>,  kReferenceOf<Rgb32>,  kReferenceOf<Palette8>,
                                     kReferenceOf<Rgb565>, kReferenceOf<Rgb555>, kReferenceOf<Luma16>};

const Reference& ReferenceFor(PixelLayout layout) {
    return kReferences[static_cast<std::size_t>(layout)];
}

} // namespace

LayoutFacts FactsOf(PixelLayout layout) {
    return ReferenceFor(layout).facts;
}

BlockSums ScalarBlockSums(PixelLayout layout) {
    return ReferenceFor(layout).sums;
}

BlockSums SelectBlockSums(PixelLayout layout, int blockSize, unsigned cpuFeatures) {
    // Of pictures that the decoder has reduced.
    if (layout == PixelLayout::Planar && blockSize < kSimdBlockSize)
        switch (blockSize) {
        case 1:
            return SumScalar<Planar, 1>;
        case 2:
            return SumScalar<Planar, 2>;
        case 4:
            return SumScalar<Planar, 4>;
        default:
            break;
        }
    const BlockSums simd = blockSize == kSimdBlockSize ? FindSimdBlockSums(layout, cpuFeatures) : nullptr;
    return simd != nullptr ? simd : ScalarBlockSums(layout);
}

} // namespace scenedetect
