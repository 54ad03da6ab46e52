#include "engine/kernels/Simd.h"

namespace scenedetect {

BlockSums FindSimdBlockSums(PixelLayout, unsigned) {
    return nullptr;
}

ByteSum FindSimdByteSum(unsigned) {
    return nullptr;
}

DifferenceSum FindSimdDifferenceSum(unsigned) {
    return nullptr;
}

} // namespace scenedetect
