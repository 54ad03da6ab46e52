#include "engine/kernels/ByteSums.h"

#include "engine/kernels/Simd.h"

#include <algorithm>

namespace scenedetect {

std::uint64_t ScalarByteSum(const std::uint8_t* bytes, std::size_t count) {
    std::uint64_t sum = 0;
    for (std::size_t i = 0; i < count; ++i)
        sum += bytes[i];
    return sum;
}

std::uint64_t ScalarDifferenceSum(const std::uint8_t* a, const std::uint8_t* b, std::size_t count,
                                  std::uint8_t clamp) {
    std::uint64_t sum = 0;
    for (std::size_t i = 0; i < count; ++i)
        sum += std::min<int>(a[i] > b[i] ? a[i] - b[i] : b[i] - a[i], clamp);
    return sum;
}

ByteSum SelectByteSum(unsigned cpuFeatures) {
    const ByteSum simd = FindSimdByteSum(cpuFeatures);
    return simd != nullptr ? simd : ScalarByteSum;
}

DifferenceSum SelectDifferenceSum(unsigned cpuFeatures) {
    const DifferenceSum simd = FindSimdDifferenceSum(cpuFeatures);
    return simd != nullptr ? simd : ScalarDifferenceSum;
}

} // namespace scenedetect
