// Times of a file as hours, minutes, seconds and decimals.
#pragma once

#include "reading/timing/TimeScale.h"

#include <cstdint>
#include <cstdio>
#include <string>

namespace scenedetect {

/// HH:MM:SS and up to nine decimals, at least one, rounded to the nearest.
[[nodiscard]] inline std::string ClockText(std::int64_t time, const TimeScale& scale, int decimals) {
    std::int32_t parts = 1;
    for (int i = 0; i < decimals; ++i)
        parts *= 10;
    const std::int64_t rounded = Rescale(time, scale.unit, {1, parts});
    const std::int64_t seconds = rounded / parts;
    char text[64];
    std::snprintf(text, sizeof text, "%02lld:%02lld:%02lld.%0*lld", static_cast<long long>(seconds / 3600),
                  static_cast<long long>(seconds / 60 % 60), static_cast<long long>(seconds % 60), decimals,
                  static_cast<long long>(rounded % parts));
    return text;
}

} // namespace scenedetect
