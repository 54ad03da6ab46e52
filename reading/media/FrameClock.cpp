#include "reading/media/FrameClock.h"

#include "reading/ffmpeg/StampLimits.h"

extern "C" {
#include <libavutil/mathematics.h>
}

#include <algorithm>
#include <cstdlib>
#include <utility>

namespace scenedetect {
namespace {

// A unit at least this fine serves stamps, too.
constexpr int kUnitsPerSecond = 1'000'000;

bool IsWild(std::int64_t value) {
    return value < -kFarthestStamp || value > kFarthestStamp;
}

// A frame lasts a whole number of these units.
AVRational UnitFor(AVRational rate) {
    return {1, rate.num * std::max(1, kUnitsPerSecond / rate.num)};
}

} // namespace

StampFiller::StampFiller(AVRational unit, AVRational rate)
    : m_step(std::max<std::int64_t>(1, av_rescale_q(1, av_inv_q(rate), unit))) {}

std::int64_t StampFiller::Next(std::int64_t stamp) {
    if (!IsWild(stamp))
        m_expected = stamp;
    else if (m_expected == kNoStamp)
        return kNoStamp;
    return std::exchange(m_expected, m_expected + m_step);
}

FrameClock::FrameClock(const Setup& setup)
    : m_setup(setup),
      m_unit(UnitFor(setup.rate)),
      m_frameTime(std::max<std::int64_t>(1, av_rescale_q(1, av_inv_q(setup.rate), m_unit))),
      m_stamps(setup.stampUnit, setup.rate),
      m_isConstant(setup.constantRate),
      m_origin(setup.origin) {}

std::optional<std::int64_t> FrameClock::TimeOf(std::int64_t stamp) {
    if (IsWild(stamp)) // a missing stamp, too
        return std::nullopt;
    // The first picture, or the first after a jump, comes when it was expected.
    const std::int64_t originNow = stamp - av_rescale_q(m_nextTime, m_unit, m_setup.stampUnit);
    if (!m_origin)
        m_origin = originNow;
    const std::int64_t time = av_rescale_q(stamp - *m_origin, m_setup.stampUnit, m_unit);
    if (IsWild(time))
        return std::nullopt;
    const std::int64_t ahead = time - m_nextTime;
    if (!m_setup.stampsMayJump ||
        (ahead <= kJumpAheadSeconds * m_unit.den && ahead >= -kJumpBackSeconds * m_unit.den))
        return time;
    m_origin = originNow;
    return m_nextTime;
}

FilePlace FrameClock::Next(std::int64_t stamp, std::int64_t byteOffset) {
    std::int64_t time = TimeOf(stamp).value_or(m_nextTime);
    if (m_isConstant) {
        const std::int64_t frame = std::max((time + m_frameTime / 2) / m_frameTime, m_nextFrame);
        // Stamps are rounded to their unit, and some writers are not exact either.
        const std::int64_t tolerance = av_rescale_q(1, m_setup.stampUnit, m_unit) + m_frameTime / 10;
        m_isConstant = std::abs(time - frame * m_frameTime) <= tolerance;
        if (m_isConstant) {
            m_nextFrame = frame;
            time = frame * m_frameTime;
        }
    }
    time = std::max(time, m_lastTime + 1);
    m_lastTime = time;
    m_nextTime = time + m_frameTime;
    return {m_nextFrame++, time, byteOffset, m_stamps.Next(stamp)};
}

} // namespace scenedetect
