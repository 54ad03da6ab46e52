#include "reading/timing/TimeScale.h"

#include "reading/timing/FrameNumbering.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <limits>
#include <numeric>

namespace scenedetect {
namespace {

constexpr std::int64_t kDurationsPerSecond = 10'000'000;
constexpr std::int32_t kMostTerm = std::numeric_limits<std::int32_t>::max();

} // namespace

bool IsSameRate(Ratio a, Ratio b) {
    constexpr double kTolerance = 1e-3;
    return std::abs(a.Value() / b.Value() - 1) < kTolerance;
}

std::int64_t Rescale(std::int64_t time, Ratio from, Ratio to) {
    std::int64_t factor = std::int64_t{from.num} * to.den;
    std::int64_t divisor = std::int64_t{from.den} * to.num;
    const std::int64_t common = std::gcd(factor, divisor);
    factor /= common;
    divisor /= common;
    // Multiplied piece by piece, so that no product but the last exceeds the result.
    const std::int64_t rest = time % divisor;
    return time / divisor * factor + rest * (factor / divisor) +
           (rest * (factor % divisor) + divisor / 2) / divisor;
}

std::int64_t FrameDurationOf(Ratio rate) {
    return std::max<std::int64_t>(1, Rescale(1, rate.Inverse(), {1, kDurationsPerSecond}));
}

Ratio RateOfFrameDuration(std::int64_t duration) {
    if (duration <= 0)
        return {25, 1};
    constexpr std::int64_t kMostUsualRate = 1000;
    const std::int64_t nearest = (kDurationsPerSecond + duration / 2) / duration;
    if (nearest > 0 && nearest <= kMostUsualRate) {
        const auto frames = static_cast<std::int32_t>(nearest);
        for (const Ratio rate : {Ratio{frames, 1}, Ratio{frames * 1000, 1001}}) {
            // Some round the duration down.
            if (std::abs(FrameDurationOf(rate) - duration) <= 1)
                return rate;
        }
    }
    return {kDurationsPerSecond, static_cast<std::int32_t>(std::min<std::int64_t>(duration, kMostTerm))};
}

std::string TimecodeText(std::int64_t time, const TimeScale& scale) {
    const std::int64_t frame = Rescale(time, scale.unit, scale.rate.Inverse());
    return FrameTimecode(frame, NumberingOf(scale.rate));
}

std::string SecondsText(std::int64_t time, const TimeScale& scale) {
    const std::int64_t milliseconds = Rescale(time, scale.unit, {1, 1000});
    char text[40];
    std::snprintf(text, sizeof text, "%lld.%03lld", static_cast<long long>(milliseconds / 1000),
                  static_cast<long long>(milliseconds % 1000));
    return text;
}

} // namespace scenedetect
