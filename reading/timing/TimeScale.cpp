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
constexpr std::int64_t kMostTime = std::numeric_limits<std::int64_t>::max();

} // namespace

namespace {

// The product of two numbers below `divisor`, which is below 2^62, by it: rounded, halves upward.
std::int64_t Scaled(std::int64_t number, std::int64_t factor, std::int64_t divisor) {
    if (factor == 0 || number <= (kMostTime - divisor / 2) / factor)
        return (number * factor + divisor / 2) / divisor;
    // Bit by bit, since the product has more than 64 of them.
    std::int64_t quotient = 0;
    std::uint64_t rest = 0;
    for (int bit = 62; bit >= 0; --bit) {
        rest = 2 * rest + static_cast<std::uint64_t>((factor >> bit & 1) != 0 ? number : 0);
        quotient = 2 * quotient + static_cast<std::int64_t>(rest / static_cast<std::uint64_t>(divisor));
        rest %= static_cast<std::uint64_t>(divisor);
    }
    return quotient + (2 * rest >= static_cast<std::uint64_t>(divisor) ? 1 : 0);
}

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
    const std::int64_t part = rest * (factor / divisor) + Scaled(rest, factor % divisor, divisor);
    return time / divisor > (kMostTime - part) / factor ? kMostTime : time / divisor * factor + part;
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
