#include "reading/media/FrameClock.h"

#include "reading/ffmpeg/Stamps.h"

extern "C" {
#include <libavutil/mathematics.h>
}

#include <algorithm>
#include <cstdlib>
#include <utility>

namespace scenedetect {
namespace {

// A time base at least this fine serves stamps, too.
constexpr int kTicksPerSecond = 1'000'000;

// A frame lasts a whole number of its ticks.
AVRational TimeBaseFor(AVRational rate) {
    return {1, rate.num * std::max(1, kTicksPerSecond / rate.num)};
}

} // namespace

StampFiller::StampFiller(AVRational timeBase, AVRational rate)
    : m_step(std::clamp<std::int64_t>(av_rescale_q(1, av_inv_q(rate), timeBase), 1, kFarthestStamp)) {}

std::int64_t StampFiller::Next(std::int64_t stamp) {
    if (!IsWild(stamp))
        m_expected = stamp;
    else if (IsWild(m_expected))
        return m_expected = kNoStamp;
    return std::exchange(m_expected, m_expected + m_step);
}

FrameClock::FrameClock(const Setup& setup)
    : m_setup(setup),
      m_timeBase(TimeBaseFor(setup.rate)),
      m_frameTime(std::max<std::int64_t>(1, av_rescale_q(1, av_inv_q(setup.rate), m_timeBase))),
      m_stamps(setup.timeBase, setup.rate),
      m_isConstant(setup.constantRate),
      m_origin(setup.origin) {}

std::optional<std::int64_t> FrameClock::TimeOf(std::int64_t stamp) {
    if (IsWild(stamp)) // a missing stamp, too
        return std::nullopt;
    // The first picture, or the first after a jump, comes when it was expected.
    const std::int64_t expected = av_rescale_q(m_nextTime, m_timeBase, m_setup.timeBase);
    if (IsWild(expected))
        return std::nullopt;
    const std::int64_t originNow = stamp - expected;
    if (!m_origin)
        m_origin = originNow;
    const std::int64_t time = av_rescale_q(stamp - *m_origin, m_setup.timeBase, m_timeBase);
    if (IsWild(time))
        return std::nullopt;
    const std::int64_t ahead = time - m_nextTime;
    if (!m_setup.stampsMayJump ||
        (ahead <= kJumpAheadSeconds * m_timeBase.den && ahead >= -kJumpBackSeconds * m_timeBase.den))
        return time;
    m_origin = originNow;
    return m_nextTime;
}

FilePlace FrameClock::Next(std::int64_t stamp, std::int64_t byteOffset) {
    std::int64_t time = TimeOf(stamp).value_or(m_nextTime);
    if (m_isConstant) {
        const std::int64_t frame = std::max((time + m_frameTime / 2) / m_frameTime, m_nextFrame);
        // Stamps are rounded to their time base, and some writers are not exact either.
        const std::int64_t tolerance = av_rescale_q(1, m_setup.timeBase, m_timeBase) + m_frameTime / 10;
        m_isConstant = std::abs(time - frame * m_frameTime) <= tolerance;
        if (m_isConstant) {
            m_nextFrame = frame;
            time = frame * m_frameTime;
        }
    }
    time = std::max(time, m_lastTime + 1);
    m_lastTime = time;
    m_nextTime = std::min(time + m_frameTime, kFarthestStamp);
    return {m_nextFrame++, time, byteOffset, m_stamps.Next(stamp)};
}

} // namespace scenedetect
