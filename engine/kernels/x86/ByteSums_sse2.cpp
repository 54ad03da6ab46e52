#include "engine/kernels/Simd.h"
#include "platform/CpuFeatures.h"

#include <emmintrin.h>

namespace scenedetect {
namespace {

constexpr std::size_t kStep = 16;

__m128i Load(const std::uint8_t* p) {
    return _mm_loadu_si128(reinterpret_cast<const __m128i*>(p));
}

std::uint64_t Total(__m128i sums) {
    std::uint64_t parts[2];
    _mm_storeu_si128(reinterpret_cast<__m128i*>(parts), sums);
    return parts[0] + parts[1];
}

std::uint64_t SumSse2(const std::uint8_t* bytes, std::size_t count) {
    constexpr std::size_t kLanes = 4; // enough to keep the loop itself from costing most
    __m128i sums[kLanes] = {};
    std::size_t i = 0;
    for (; i + kLanes * kStep <= count; i += kLanes * kStep)
        for (std::size_t lane = 0; lane < kLanes; ++lane)
            sums[lane] =
                _mm_add_epi64(sums[lane], _mm_sad_epu8(Load(bytes + i + lane * kStep), _mm_setzero_si128()));
    const __m128i sum = _mm_add_epi64(_mm_add_epi64(sums[0], sums[1]), _mm_add_epi64(sums[2], sums[3]));
    return Total(sum) + ScalarByteSum(bytes + i, count - i);
}

std::uint64_t SumDifferencesSse2(const std::uint8_t* a, const std::uint8_t* b, std::size_t count,
                                 std::uint8_t clamp) {
    const __m128i limit = _mm_set1_epi8(static_cast<char>(clamp));
    __m128i sums = _mm_setzero_si128();
    std::size_t i = 0;
    for (; i + kStep <= count; i += kStep) {
        const __m128i x = Load(a + i);
        const __m128i y = Load(b + i);
        // One of the two saturating differences is always 0.
        const __m128i difference = _mm_or_si128(_mm_subs_epu8(x, y), _mm_subs_epu8(y, x));
        sums = _mm_add_epi64(sums, _mm_sad_epu8(_mm_min_epu8(difference, limit), _mm_setzero_si128()));
    }
    return Total(sums) + ScalarDifferenceSum(a + i, b + i, count - i, clamp);
}

} // namespace

ByteSum FindSimdByteSum(unsigned cpuFeatures) {
    return (cpuFeatures & kCpuSse2) != 0 ? SumSse2 : nullptr;
}

DifferenceSum FindSimdDifferenceSum(unsigned cpuFeatures) {
    return (cpuFeatures & kCpuSse2) != 0 ? SumDifferencesSse2 : nullptr;
}

} // namespace scenedetect
