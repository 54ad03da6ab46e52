// Block kernels for processors with AVX2, for layouts of which they sum faster than with SSE2.
#pragma once

#include "engine/kernels/Simd.h"

namespace scenedetect {

/// Null for other layouts.
[[nodiscard]] BlockSums FindAvx2BlockSums(PixelLayout layout);

} // namespace scenedetect
