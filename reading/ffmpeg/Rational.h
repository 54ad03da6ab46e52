// Fractions of FFmpeg's libraries and our own.
#pragma once

#include "reading/timing/TimeScale.h"

extern "C" {
#include <libavutil/rational.h>
}

namespace scenedetect {

[[nodiscard]] constexpr Ratio RatioOf(AVRational rational) {
    return {rational.num, rational.den};
}
[[nodiscard]] constexpr AVRational RationalOf(Ratio ratio) {
    return {ratio.num, ratio.den};
}

/// The libraries have 0 in the numerator or the denominator of what they do not know.
[[nodiscard]] constexpr bool IsKnown(AVRational rational) {
    return rational.num > 0 && rational.den > 0;
}

} // namespace scenedetect
