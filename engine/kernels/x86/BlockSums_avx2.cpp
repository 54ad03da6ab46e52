#include "engine/kernels/x86/Avx2.h"

#include <immintrin.h>

namespace scenedetect {
namespace {

/// Reads pairs of the palette's sums and forgets the upper ones.
// The function names its instruction set, so that nothing else of this file is compiled for it: the linker
// might choose such a copy of a shared function for processors that lack it.
[[gnu::target("avx2")]] void SumPaletteByAvx2(const BlockRow& row, std::uint32_t* sums) {
    const auto* const pairs = reinterpret_cast<const int*>(row.paletteSums);
    for (int block = 0; block < row.blocks; ++block) {
        const std::uint8_t* p = row.bits + std::ptrdiff_t{block} * kSimdBlockSize;
        __m256i total = _mm256_setzero_si256();
        for (int y = 0; y < kSimdBlockSize; ++y, p += row.rowStride) {
            const __m128i bytes = _mm_loadl_epi64(reinterpret_cast<const __m128i*>(p));
            const __m256i values = _mm256_i32gather_epi32(pairs, _mm256_cvtepu8_epi32(bytes), 2);
            total = _mm256_add_epi32(total, _mm256_and_si256(values, _mm256_set1_epi32(0xFFFF)));
        }
        const __m128i four = _mm_add_epi32(_mm256_castsi256_si128(total), _mm256_extracti128_si256(total, 1));
        const __m128i two = _mm_add_epi32(four, _mm_unpackhi_epi64(four, four));
        sums[block] = static_cast<std::uint32_t>(_mm_cvtsi128_si32(two) + _mm_extract_epi32(two, 1));
    }
}

} // namespace

// The pixels of all others come no faster from memory than SSE2 sums them up.
BlockSums FindAvx2BlockSums(PixelLayout layout) {
    return layout == PixelLayout::Palette8 ? SumPaletteByAvx2 : nullptr;
}

} // namespace scenedetect
