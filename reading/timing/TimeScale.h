// From the times of a file to what is printed: seconds and timecode.
#pragma once

#include <cstdint>
#include <string>

namespace scenedetect {

/// A fraction of two positive numbers.
struct Ratio {
    std::int32_t num = 1;
    std::int32_t den = 1;

    [[nodiscard]] constexpr Ratio Inverse() const { return {den, num}; }
    [[nodiscard]] constexpr double Value() const { return static_cast<double>(num) / den; }
    friend constexpr bool operator==(const Ratio&, const Ratio&) = default;
};

/// Whether the two are the same rate, as coarsely as files round theirs.
[[nodiscard]] bool IsSameRate(Ratio a, Ratio b);

/// The unit of the file's times in seconds, and its frame rate (the nominal one when the rate is variable).
struct TimeScale {
    Ratio unit{1, 25};
    Ratio rate{25, 1};
};

/// A time of 0 or later, counted in units of `from`, in units of `to`: rounded to the nearest, halves upward.
/// Exact; the largest number there is where that is not enough.
[[nodiscard]] std::int64_t Rescale(std::int64_t time, Ratio from, Ratio to);

/// AvgTimePerFrame of a rate: 100 ns, rounded to the nearest, at least 1.
[[nodiscard]] std::int64_t FrameDurationOf(Ratio rate);
/// The rate that an AvgTimePerFrame stands for: a whole one, one of 1000/1001 of that, or just what it says.
/// 25 when it is not above 0.
[[nodiscard]] Ratio RateOfFrameDuration(std::int64_t duration);

/// HH:MM:SS:FF of the frame at `time`, or HH:MM:SS;FF at 29.97 and 59.94 frames per second, where two (four)
/// numbers are left out each minute but every tenth. Hours are not reduced modulo 24.
[[nodiscard]] std::string TimecodeText(std::int64_t time, const TimeScale& scale);

/// Seconds with three decimals, rounded to the nearest.
[[nodiscard]] std::string SecondsText(std::int64_t time, const TimeScale& scale);

} // namespace scenedetect
