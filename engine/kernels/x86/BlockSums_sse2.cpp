#include "engine/kernels/x86/Avx2.h"
#include "platform/CpuFeatures.h"

#include <emmintrin.h>

namespace scenedetect {
namespace {

constexpr int kRows = kSimdBlockSize;

__m128i Load16(const std::uint8_t* p) {
    return _mm_loadu_si128(reinterpret_cast<const __m128i*>(p));
}

__m128i Load8(const std::uint8_t* p) {
    return _mm_loadl_epi64(reinterpret_cast<const __m128i*>(p));
}

/// Has the cache line two rows of blocks below fetched. Past the end of the memory nothing happens.
void FetchBelow(const std::uint8_t* p, std::ptrdiff_t rowStride) {
    const auto below =
        reinterpret_cast<std::uintptr_t>(p) + static_cast<std::uintptr_t>(rowStride * kRows * 2);
    // A pointer there might not be computed from p: it may be past the end of the memory.
    _mm_prefetch(reinterpret_cast<const char*>(below), _MM_HINT_T0); // NOLINT(performance-no-int-to-ptr)
}

/// The sums of the lower and of the upper eight bytes.
__m128i SumBytes(__m128i v) {
    return _mm_sad_epu8(v, _mm_setzero_si128());
}

std::uint32_t Lower(__m128i v) {
    return static_cast<std::uint32_t>(_mm_cvtsi128_si32(v));
}

std::uint32_t Upper(__m128i v) {
    return Lower(_mm_unpackhi_epi64(v, v));
}

/// The sum of eight words below 32768.
std::uint32_t SumWords(__m128i v) {
    const __m128i pairs = _mm_madd_epi16(v, _mm_set1_epi16(1));
    const __m128i halves = _mm_add_epi32(pairs, _mm_unpackhi_epi64(pairs, pairs));
    return Lower(_mm_add_epi32(halves, _mm_shuffle_epi32(halves, 1)));
}

// The eight words of a pixel each, in 16 bytes of two-byte pixels.
struct Yuy2Words {
    static __m128i Of(__m128i v, int) { return _mm_and_si128(v, _mm_set1_epi16(0xFF)); }
};

struct UyvyWords {
    static __m128i Of(__m128i v, int) { return _mm_srli_epi16(v, 8); }
};

struct Luma16Words {
    static __m128i Of(__m128i v, int shift) {
        return _mm_and_si128(_mm_srl_epi16(v, _mm_cvtsi32_si128(shift)), _mm_set1_epi16(0xFF));
    }
};

__m128i Component(__m128i v, short mask) {
    return _mm_and_si128(v, _mm_set1_epi16(mask));
}

struct Rgb565Words {
    static __m128i Of(__m128i v, int) {
        const __m128i blue = _mm_slli_epi16(Component(v, 0x1F), 3);
        const __m128i green = Component(_mm_srli_epi16(v, 3), 0xFC);
        const __m128i red = Component(_mm_srli_epi16(v, 8), 0xF8);
        return _mm_add_epi16(blue, _mm_add_epi16(green, red));
    }
};

struct Rgb555Words {
    static __m128i Of(__m128i v, int) {
        const __m128i blue = _mm_slli_epi16(Component(v, 0x1F), 3);
        const __m128i green = Component(_mm_srli_epi16(v, 2), 0xF8);
        const __m128i red = Component(_mm_srli_epi16(v, 7), 0xF8);
        return _mm_add_epi16(blue, _mm_add_epi16(green, red));
    }
};

/// Two-byte pixels: eight of them give eight words of at most 760, of which eight rows fit into 16 bits.
/// Several blocks at a time take whole cache lines of each row.
template <typename Words, int blocks>
void SumWordBlocks(const std::uint8_t* p, const BlockRow& row, std::uint32_t* sums) {
    __m128i words[blocks] = {};
    for (int y = 0; y < kRows; ++y, p += row.rowStride) {
        if constexpr (blocks > 1)
            FetchBelow(p, row.rowStride);
        for (std::ptrdiff_t i = 0; i < blocks; ++i)
            words[i] = _mm_add_epi16(words[i], Words::Of(Load16(p + 16 * i), row.shift));
    }
    for (int i = 0; i < blocks; ++i)
        sums[i] = SumWords(words[i]);
}

template <typename Words>
void SumWordPixels(const BlockRow& row, std::uint32_t* sums) {
    const auto at = [&](int block) { return row.bits + std::ptrdiff_t{block} * 16; };
    int block = 0;
    for (; block + 4 <= row.blocks; block += 4)
        SumWordBlocks<Words, 4>(at(block), row, sums + block);
    for (; block < row.blocks; ++block)
        SumWordBlocks<Words, 1>(at(block), row, sums + block);
}

/// `pairs` times two blocks side by side. Several pairs at a time take whole cache lines of each row.
template <int pairs>
void SumPlanarPairs(const std::uint8_t* p, std::ptrdiff_t rowStride, std::uint32_t* sums) {
    __m128i both[pairs] = {};
    for (int y = 0; y < kRows; ++y, p += rowStride) {
        if constexpr (pairs > 1)
            FetchBelow(p, rowStride);
        for (std::ptrdiff_t i = 0; i < pairs; ++i)
            both[i] = _mm_add_epi64(both[i], SumBytes(Load16(p + 16 * i)));
    }
    for (std::ptrdiff_t i = 0; i < pairs; ++i) {
        sums[2 * i] = Lower(both[i]);
        sums[2 * i + 1] = Upper(both[i]);
    }
}

void SumPlanar(const BlockRow& row, std::uint32_t* sums) {
    const auto at = [&](int block) { return row.bits + std::ptrdiff_t{block} * 8; };
    int block = 0;
    for (; block + 8 <= row.blocks; block += 8)
        SumPlanarPairs<4>(at(block), row.rowStride, sums + block);
    for (; block + 2 <= row.blocks; block += 2)
        SumPlanarPairs<1>(at(block), row.rowStride, sums + block);
    if (block < row.blocks) {
        const std::uint8_t* p = at(block);
        __m128i last = _mm_setzero_si128();
        for (int y = 0; y < kRows; ++y, p += row.rowStride)
            last = _mm_add_epi64(last, SumBytes(Load8(p)));
        sums[block] = Lower(last);
    }
}

/// The 24 bytes of a block's row, `pitch` bytes from one block to the next.
template <int pitch>
void SumTriples(const BlockRow& row, std::uint32_t* sums, int firstBlock) {
    for (int block = firstBlock; block < row.blocks; ++block) {
        const std::uint8_t* p = row.bits + std::ptrdiff_t{block} * pitch;
        __m128i sum = _mm_setzero_si128();
        for (int y = 0; y < kRows; ++y, p += row.rowStride)
            sum = _mm_add_epi64(sum, _mm_add_epi64(SumBytes(Load16(p)), SumBytes(Load8(p + 16))));
        sums[block] = Lower(sum) + Upper(sum);
    }
}

void SumRgb32(const BlockRow& row, std::uint32_t* sums) {
    SumTriples<32>(row, sums, 0);
}

/// Two blocks are 48 bytes; the middle 16 of them belong half to one and half to the other.
void SumRgb24(const BlockRow& row, std::uint32_t* sums) {
    int block = 0;
    for (; block + 2 <= row.blocks; block += 2) {
        const std::uint8_t* p = row.bits + std::ptrdiff_t{block} * 24;
        __m128i first = _mm_setzero_si128();
        __m128i middle = first;
        __m128i last = first;
        for (int y = 0; y < kRows; ++y, p += row.rowStride) {
            first = _mm_add_epi64(first, SumBytes(Load16(p)));
            middle = _mm_add_epi64(middle, SumBytes(Load16(p + 16)));
            last = _mm_add_epi64(last, SumBytes(Load16(p + 32)));
        }
        sums[block] = Lower(first) + Upper(first) + Lower(middle);
        sums[block + 1] = Upper(middle) + Lower(last) + Upper(last);
    }
    SumTriples<24>(row, sums, block);
}

} // namespace

BlockSums FindSimdBlockSums(PixelLayout layout, unsigned cpuFeatures) {
    if ((cpuFeatures & kCpuAvx2) != 0)
        if (const BlockSums found = FindAvx2BlockSums(layout))
            return found;
    if ((cpuFeatures & kCpuSse2) == 0)
        return nullptr;
    switch (layout) {
    case PixelLayout::Yuy2:
        return SumWordPixels<Yuy2Words>;
    case PixelLayout::Uyvy:
        return SumWordPixels<UyvyWords>;
    case PixelLayout::Planar:
        return SumPlanar;
    case PixelLayout::Rgb24:
        return SumRgb24;
    case PixelLayout::Rgb32:
        return SumRgb32;
    case PixelLayout::Rgb565:
        return SumWordPixels<Rgb565Words>;
    case PixelLayout::Rgb555:
        return SumWordPixels<Rgb555Words>;
    case PixelLayout::Luma16:
        return SumWordPixels<Luma16Words>;
    case PixelLayout::Palette8:
        break; // every byte is a table lookup of its own
    }
    return nullptr;
}

} // namespace scenedetect
