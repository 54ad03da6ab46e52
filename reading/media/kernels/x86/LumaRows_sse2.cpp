#include "platform/CpuFeatures.h"
#include "reading/media/kernels/LumaRows.h"

#include <emmintrin.h>

namespace scenedetect {
namespace {

void BytesToYuy2BySse2(const std::uint8_t* luma, int shift, std::uint8_t* yuy2, std::size_t width) {
    const __m128i chroma = _mm_set1_epi8(static_cast<char>(kNeutralChroma));
    std::size_t x = 0;
    for (; x + 16 <= width; x += 16) {
        const __m128i pixels = _mm_loadu_si128(reinterpret_cast<const __m128i*>(luma + x));
        auto* target = reinterpret_cast<__m128i*>(yuy2 + 2 * x);
        _mm_storeu_si128(target, _mm_unpacklo_epi8(pixels, chroma));
        _mm_storeu_si128(target + 1, _mm_unpackhi_epi8(pixels, chroma));
    }
    ScalarLumaRow(LumaPixels::Bytes)(luma + x, shift, yuy2 + 2 * x, width - x);
}

void WordsToYuy2BySse2(const std::uint8_t* luma, int shift, std::uint8_t* yuy2, std::size_t width) {
    const __m128i chroma = _mm_set1_epi16(static_cast<short>(kNeutralChroma << 8));
    const __m128i lowByte = _mm_set1_epi16(0xFF);
    const __m128i count = _mm_cvtsi32_si128(shift);
    std::size_t x = 0;
    for (; x + 8 <= width; x += 8) {
        const __m128i pixels = _mm_loadu_si128(reinterpret_cast<const __m128i*>(luma + 2 * x));
        const __m128i bytes = _mm_and_si128(_mm_srl_epi16(pixels, count), lowByte);
        _mm_storeu_si128(reinterpret_cast<__m128i*>(yuy2 + 2 * x), _mm_or_si128(bytes, chroma));
    }
    ScalarLumaRow(LumaPixels::Words)(luma + 2 * x, shift, yuy2 + 2 * x, width - x);
}

} // namespace

LumaRow FindSimdLumaRow(LumaPixels pixels, unsigned cpuFeatures) {
    if ((cpuFeatures & kCpuSse2) == 0)
        return nullptr;
    return pixels == LumaPixels::Bytes ? BytesToYuy2BySse2 : WordsToYuy2BySse2;
}

} // namespace scenedetect
