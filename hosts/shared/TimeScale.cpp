#include "hosts/shared/TimeScale.h"

#include "platform/Text.h"
#include "support/Timecode.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <limits>
#include <numeric>

namespace scenedetect {
namespace {

constexpr std::int64_t kDurationsPerSecond = 10'000'000;
constexpr std::int32_t kMostTerm = std::numeric_limits<std::int32_t>::max();

// Rates as files round them: 29.97 and 30000/1001 are the same timecode.
constexpr double kRateTolerance = 1e-4;

bool IsAbout(double value, double expected) {
    return std::abs(value - expected) < expected * kRateTolerance;
}

// Frame numbers that each minute but every tenth leaves out; 0 without drop-frame.
std::int64_t DroppedPerMinute(double rate) {
    if (IsAbout(rate, 30000.0 / 1001.0))
        return 2;
    if (IsAbout(rate, 60000.0 / 1001.0))
        return 4;
    return 0;
}

// From a count of frames to the number that drop-frame timecode gives the frame.
std::int64_t DropFrameNumber(std::int64_t frame, std::int64_t wholeRate, std::int64_t dropped) {
    const std::int64_t perMinute = wholeRate * 60 - dropped;
    const std::int64_t perTenMinutes = wholeRate * 600 - dropped * 9;
    const std::int64_t inTen = frame % perTenMinutes;
    // The first of ten minutes is whole, hence the frames that it has more than the others.
    const std::int64_t shortMinutes = inTen < wholeRate * 60 ? 0 : (inTen - dropped) / perMinute;
    return frame + dropped * (9 * (frame / perTenMinutes) + shortMinutes);
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
    const std::int64_t wholeRate = std::max<std::int64_t>(1, std::llround(scale.rate.Value()));
    const std::int64_t dropped = DroppedPerMinute(scale.rate.Value());
    const std::int64_t number = dropped != 0 ? DropFrameNumber(frame, wholeRate, dropped) : frame;

    std::wstring text;
    FramesToTimecodeText(text, static_cast<std::int32_t>(std::clamp<std::int64_t>(number, 0, kMostTerm)),
                         true, static_cast<std::int32_t>(wholeRate));
    if (dropped != 0)
        text[text.rfind(L':')] = L';';
    return Utf8FromWide(text);
}

std::string SecondsText(std::int64_t time, const TimeScale& scale) {
    const std::int64_t milliseconds = Rescale(time, scale.unit, {1, 1000});
    char text[40];
    std::snprintf(text, sizeof text, "%lld.%03lld", static_cast<long long>(milliseconds / 1000),
                  static_cast<long long>(milliseconds % 1000));
    return text;
}

} // namespace scenedetect
