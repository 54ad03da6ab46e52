#include "reading/media/LumaRows.h"

#include <cstring>

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

namespace scenedetect {
namespace {

constexpr std::uint8_t kNeutralChroma = 0x80;

void StorePixel(std::uint8_t* yuy2, std::size_t x, std::uint8_t luma) {
    yuy2[2 * x] = luma;
    yuy2[2 * x + 1] = kNeutralChroma;
}

} // namespace

void LumaBytesToYuy2(const std::uint8_t* luma, std::uint8_t* yuy2, std::size_t width) {
    std::size_t x = 0;
#if defined(__SSE2__)
    const __m128i chroma = _mm_set1_epi8(static_cast<char>(kNeutralChroma));
    for (; x + 16 <= width; x += 16) {
        const __m128i pixels = _mm_loadu_si128(reinterpret_cast<const __m128i*>(luma + x));
        auto* target = reinterpret_cast<__m128i*>(yuy2 + 2 * x);
        _mm_storeu_si128(target, _mm_unpacklo_epi8(pixels, chroma));
        _mm_storeu_si128(target + 1, _mm_unpackhi_epi8(pixels, chroma));
    }
#endif
    for (; x < width; ++x)
        StorePixel(yuy2, x, luma[x]);
}

void LumaWordsToYuy2(const std::uint8_t* words, int shift, std::uint8_t* yuy2, std::size_t width) {
    std::size_t x = 0;
#if defined(__SSE2__)
    const __m128i chroma = _mm_set1_epi16(static_cast<short>(kNeutralChroma << 8));
    const __m128i lowByte = _mm_set1_epi16(0xFF);
    const __m128i count = _mm_cvtsi32_si128(shift);
    for (; x + 8 <= width; x += 8) {
        const __m128i pixels = _mm_loadu_si128(reinterpret_cast<const __m128i*>(words + 2 * x));
        const __m128i luma = _mm_and_si128(_mm_srl_epi16(pixels, count), lowByte);
        _mm_storeu_si128(reinterpret_cast<__m128i*>(yuy2 + 2 * x), _mm_or_si128(luma, chroma));
    }
#endif
    for (; x < width; ++x) {
        std::uint16_t word = 0;
        std::memcpy(&word, words + 2 * x, sizeof word);
        StorePixel(yuy2, x, static_cast<std::uint8_t>(word >> shift));
    }
}

} // namespace scenedetect
