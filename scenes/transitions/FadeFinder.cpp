#include "scenes/transitions/FadeFinder.h"

#include <utility>

namespace scenedetect {
namespace {

// A frame at rest is uniform: no sample is much off the level. A night scene may be as dark, but has a
// picture.
constexpr std::int32_t kMostVariance = 9;
constexpr std::int32_t kBlack = 40;
constexpr std::int32_t kWhite = 200;
// A grain of noise may take that long out of a rest.
constexpr std::int64_t kLongestGrain = 3;
// A picture's level is off the rest's by as much at least.
constexpr std::int32_t kLeastDepth = 8;

bool IsUniform(const FrameMeasures& frame, bool isDark) {
    return frame.distances.variance <= kMostVariance &&
           (isDark ? frame.level <= kBlack : frame.level >= kWhite);
}

// One side of a rest: where `step` leads away from its frame `edge`.
struct Side {
    std::int32_t depth = 0; ///< by how much the level goes away from the rest's
    bool isGradual = false; ///< in steps, of which the first is a third at the most
    std::int64_t nearer;    ///< the last frame that is nearer to the rest than to the picture
    std::int64_t ramp;      ///< the last at which the level still goes away
};

bool IsCutAway(const MeasureRing& frames, std::int64_t frame) {
    const auto difference = [&](std::int64_t at) { return frames.Has(at) ? frames.At(at).difference : 0; };
    return frames.At(frame).isCut &&
           difference(frame) > 2 * std::max(difference(frame - 1), difference(frame + 1));
}

Side LookAside(const MeasureRing& frames, std::int64_t edge, std::int32_t level, std::int64_t step) {
    Side side{.nearer = edge, .ramp = edge};
    const auto away = [&](std::int64_t frame) { return std::abs(frames.At(frame).level - level); };
    std::int64_t last = edge;
    // The first step may be a cut, but the picture ends with a further one.
    for (std::int64_t next = edge + step; std::abs(next - edge) <= FadeFinder::kReach && frames.Has(next);
         last = next, next += step) {
        if (last != edge && IsCutAway(frames, step < 0 ? last : next))
            break;
        side.depth = std::max(side.depth, away(next));
    }
    if (last == edge)
        return side;
    side.isGradual = side.depth >= kLeastDepth && 3 * away(edge + step) <= side.depth;
    while (side.nearer != last && 2 * away(side.nearer + step) <= side.depth)
        side.nearer += step;
    while (side.isGradual && side.ramp != last && away(side.ramp + step) >= away(side.ramp) - 1)
        side.ramp += step;
    return side;
}

} // namespace

std::optional<Fade> FadeFinder::Note(const MeasureRing& frames, std::int64_t now) {
    std::optional<Fade> fade;
    const bool isThere = frames.Has(now);
    const bool isUniform = isThere && (IsUniform(frames.At(now), true) || IsUniform(frames.At(now), false));
    const bool isDark = isUniform && IsUniform(frames.At(now), true);
    const bool goesOn =
        m_rest && isUniform && m_rest->isDark == isDark && now - m_rest->last <= kLongestGrain + 1;
    if (m_rest && !goesOn && (isUniform || now - m_rest->last >= kReach)) {
        fade = Judge(frames, !m_rest->isLong, true);
        m_rest.reset();
    }
    if (!isUniform)
        return fade;
    const std::int32_t level = frames.At(now).level;
    if (!goesOn)
        m_rest = Rest{now, now, level, isDark};
    m_rest->last = now;
    m_rest->level = isDark ? std::min(m_rest->level, level) : std::max(m_rest->level, level);
    if (!m_rest->isLong && now - m_rest->first >= kLongestRest) {
        fade = Judge(frames, true, false);
        m_rest->isLong = true;
    }
    return fade;
}

Fade FadeFinder::Judge(const MeasureRing& frames, bool looksBefore, bool looksAfter) const {
    const auto isAtRest = [&](std::int64_t frame) {
        return frames.Has(frame) && std::abs(frames.At(frame).level - m_rest->level) <= 1;
    };
    std::int64_t first = m_rest->first;
    while (looksBefore && first < m_rest->last && !isAtRest(first))
        ++first;
    std::int64_t last = m_rest->last;
    while (last > first && !isAtRest(last))
        --last;
    const Side before =
        looksBefore ? LookAside(frames, first, m_rest->level, -1) : Side{.nearer = last, .ramp = last};
    const Side after =
        looksAfter ? LookAside(frames, last, m_rest->level, 1) : Side{.nearer = first, .ramp = first};
    const bool isScene = (before.isGradual || after.isGradual) &&
                         (!looksBefore || before.depth >= kLeastDepth) &&
                         (!looksAfter || after.depth >= kLeastDepth);
    return Fade{first,      last,    before.nearer, after.nearer, before.ramp,
                after.ramp, isScene, looksBefore,   looksAfter};
}

} // namespace scenedetect
