// Frame rates that most tests of times are about.
#pragma once

#include "reading/timing/TimeScale.h"

namespace scenedetect::testing_support {

inline constexpr Ratio kPal{25, 1};
inline constexpr Ratio kNtsc{30000, 1001};
inline constexpr Ratio kDoubleNtsc{60000, 1001};

} // namespace scenedetect::testing_support
