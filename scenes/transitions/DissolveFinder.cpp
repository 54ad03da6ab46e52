#include "scenes/transitions/DissolveFinder.h"

#include <utility>

namespace scenedetect {
namespace {

constexpr std::array<std::int32_t, 2> kWindows = {16, 32};
constexpr std::int64_t kLongestPause = 4;
constexpr int kLeastCount = 3;
// What changes for longer is motion, or light.
constexpr std::int64_t kLongestDissolve = 128;
// Pictures that differ by less are alike.
constexpr std::int32_t kLeastDistance = 12;
// A frame as uniform as this is at rest in a fade.
constexpr std::int32_t kUniform = 9;

std::int32_t VarianceAt(const MeasureRing& frames, std::int64_t frame) {
    return frames.At(frame).distances.variance;
}

// How far frames are apart next to a window; 0 where a cut says nothing of the motion, or the film ends.
std::int32_t Outside(const MeasureRing& frames, std::int64_t end, std::int32_t span) {
    return frames.HasCut(end - span + 1, end) ? 0 : frames.Distance(end, span);
}

bool IsQuiet(const MeasureRing& frames, std::int64_t end, std::int32_t span) {
    const std::int32_t distance = frames.Distance(end, span);
    for (std::int64_t frame = end - span + 1; frame <= end; ++frame)
        if (frames.At(frame).isCut || 2 * frames.At(frame).difference > distance)
            return false;
    for (std::int64_t frame = end - span - kLongestPause; frame <= end + kLongestPause; ++frame)
        if (frames.Has(frame) && VarianceAt(frames, frame) <= kUniform)
            return false;
    return true;
}

// Whether the frames of a window are mixed of its first and its last one.
bool IsMixed(const MeasureRing& frames, std::int64_t end, std::int32_t span) {
    const std::int64_t begin = end - span;
    const std::int64_t middle = end - span / 2;
    const std::int32_t distance = frames.Distance(end, span);
    if (!frames.Has(begin) || distance < kLeastDistance || !IsQuiet(frames, end, span))
        return false;
    // Each sample goes straight from one value to the other, and so does the level. What moves goes astray.
    const std::int32_t way = frames.Distance(end, span / 2) + frames.Distance(middle, span / 2);
    const std::int32_t bend =
        std::abs(2 * frames.At(middle).level - frames.At(begin).level - frames.At(end).level);
    if (100 * distance < 88 * way || bend > std::max(2, distance / 4))
        return false;
    // Mixed pictures have less contrast: the variance is a parabola, whose second difference is half the
    // variance of what the pictures differ by. Motion takes along the contrast that there is, most of it.
    const std::int32_t dip =
        VarianceAt(frames, end) - 2 * VarianceAt(frames, middle) + VarianceAt(frames, begin);
    const std::int32_t step = frames.LevelStep(begin, end);
    if (dip < 4 || 4 * dip < VarianceAt(frames, middle) || 8 * dip < 5 * (distance * distance - step * step))
        return false;
    // Pictures before and after are less far apart at such a span.
    const std::int32_t motion = std::max(Outside(frames, begin, span), Outside(frames, end + span, span));
    return 5 * distance >= 6 * motion;
}

} // namespace

std::optional<Dissolve> DissolveFinder::Note(const MeasureRing& frames, std::int64_t now) {
    const std::int64_t end = now - kLookAhead;
    for (std::size_t i = 0; i < kWindows.size(); ++i) {
        Run& run = m_runs[i];
        if (frames.Has(end) && IsMixed(frames, end, kWindows[i])) {
            if (run.count++ == 0)
                run.first = end;
            run.last = end;
            run.distance = std::max(run.distance, frames.Distance(end, kWindows[i]));
        } else if (run.count != 0 && end - run.last > kLongestPause) {
            Close(run, kWindows[i]);
        }
    }
    if (!m_found || end - kWindows.back() - kLongestPause <= m_found->dissolve.last)
        return std::nullopt;
    const Dissolve found = std::exchange(m_found, std::nullopt)->dissolve;
    return found.last - found.first <= kLongestDissolve ? std::optional(found) : std::nullopt;
}

void DissolveFinder::Close(Run& run, std::int32_t span) {
    const Run closed = std::exchange(run, {});
    if (closed.count < kLeastCount)
        return;
    const Dissolve dissolve{closed.first - span, closed.last, (closed.first + closed.last - span) / 2};
    if (!m_found)
        m_found = Found{dissolve, 0};
    Dissolve& whole = m_found->dissolve;
    whole.first = std::min(whole.first, dissolve.first);
    whole.last = std::max(whole.last, dissolve.last);
    if (closed.distance > m_found->distance) {
        m_found->distance = closed.distance;
        whole.middle = dissolve.middle;
    }
}

std::int64_t DissolveFinder::SettledBefore(std::int64_t now) const {
    std::int64_t first = now - kLookAhead - kWindows.back();
    for (std::size_t i = 0; i < kWindows.size(); ++i)
        if (m_runs[i].count != 0)
            first = std::min(first, m_runs[i].first - kWindows[i]);
    if (m_found)
        first = std::min(first, m_found->dissolve.first);
    return std::max(first, now - kLookAhead - 2 * kLongestDissolve);
}

} // namespace scenedetect
