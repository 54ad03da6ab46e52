// The kernels that a processor family adds to the scalar ones; one source folder for each family.
#pragma once

#include "engine/kernels/BlockSums.h"
#include "engine/kernels/ByteSums.h"

namespace scenedetect {

/// The block size and number of rows that all SIMD block kernels are made for.
inline constexpr int kSimdBlockSize = 8;

// Null where the family has nothing better than the reference for these features.
[[nodiscard]] BlockSums FindSimdBlockSums(PixelLayout layout, unsigned cpuFeatures);
[[nodiscard]] ByteSum FindSimdByteSum(unsigned cpuFeatures);
[[nodiscard]] DifferenceSum FindSimdDifferenceSum(unsigned cpuFeatures);

} // namespace scenedetect
