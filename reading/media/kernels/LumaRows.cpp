#include "reading/media/kernels/LumaRows.h"

#include <cstring>

namespace scenedetect {
namespace {

void BytesToYuy2(const std::uint8_t* luma, int /*shift*/, std::uint8_t* yuy2, std::size_t width) {
    for (std::size_t x = 0; x < width; ++x) {
        yuy2[2 * x] = luma[x];
        yuy2[2 * x + 1] = kNeutralChroma;
    }
}

void WordsToYuy2(const std::uint8_t* luma, int shift, std::uint8_t* yuy2, std::size_t width) {
    for (std::size_t x = 0; x < width; ++x) {
        std::uint16_t word = 0;
        std::memcpy(&word, luma + 2 * x, sizeof word);
        yuy2[2 * x] = static_cast<std::uint8_t>(word >> shift);
        yuy2[2 * x + 1] = kNeutralChroma;
    }
}

} // namespace

LumaRow ScalarLumaRow(LumaPixels pixels) {
    return pixels == LumaPixels::Bytes ? BytesToYuy2 : WordsToYuy2;
}

LumaRow SelectLumaRow(LumaPixels pixels, unsigned cpuFeatures) {
    const LumaRow simd = FindSimdLumaRow(pixels, cpuFeatures);
    return simd != nullptr ? simd : ScalarLumaRow(pixels);
}

} // namespace scenedetect
