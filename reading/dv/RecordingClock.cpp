#include "reading/dv/RecordingClock.h"

#include <algorithm>

namespace scenedetect {
namespace {

constexpr std::int64_t kSecond = kDvTicksPerSecond;
constexpr std::int64_t kDaySeconds = 86400;
constexpr std::int64_t kDayTicks = kDaySeconds * kSecond;
// Recorders don't always write the new second with the frame it begins at.
constexpr std::int64_t kTolerance = kSecond / 2;

// The nearest whole number of units, halves away from 0.
constexpr std::int64_t Nearest(std::int64_t value, std::int64_t unit) {
    return (value < 0 ? value - unit / 2 : value + unit / 2) / unit;
}

} // namespace

std::optional<ClockReading> ReadingOf(const DvPacks& packs, std::int64_t position) {
    if (!packs.time)
        return std::nullopt;
    std::int64_t seconds = packs.time->count();
    if (packs.date)
        seconds += std::chrono::sys_days(*packs.date).time_since_epoch().count() * kDaySeconds;
    return ClockReading{seconds, packs.date.has_value(), position};
}

// Where one of the two has no date, on the day that brings them nearest.
std::int64_t RecordingClock::DistanceOf(const ClockReading& reading) const {
    const std::int64_t distance = reading.seconds * kSecond - reading.position;
    if (!m_hasReading || (m_hasDate && reading.hasDate))
        return distance;
    return distance - Nearest(distance - m_most, kDayTicks) * kDayTicks;
}

std::optional<std::int64_t> RecordingClock::BreakAt(const ClockReading& reading) const {
    if (!m_hasReading)
        return std::nullopt;
    const std::int64_t distance = DistanceOf(reading);
    if (std::max(m_most, distance) - std::min(m_least, distance) <= kSecond + kTolerance)
        return std::nullopt;
    // Rounding takes away from distances, so the largest is nearest the clock's own.
    return Nearest(distance - m_most, kSecond);
}

void RecordingClock::Follow(const ClockReading& reading) {
    std::int64_t distance = DistanceOf(reading);
    if (!m_hasReading || BreakAt(reading)) {
        m_hasDate = reading.hasDate;
        m_least = m_most = reading.seconds * kSecond - reading.position;
    } else {
        if (!m_hasDate && reading.hasDate) {
            // From now on the day is known.
            const std::int64_t dated = reading.seconds * kSecond - reading.position;
            m_least += dated - distance;
            m_most += dated - distance;
            distance = dated;
            m_hasDate = true;
        }
        if (distance > m_most) {
            m_most = distance;
            m_least = std::max(m_least, distance - kSecond);
        } else if (distance < m_least) {
            m_least = distance;
            m_most = std::min(m_most, distance + kSecond);
        }
    }
    m_hasReading = true;
}

} // namespace scenedetect
