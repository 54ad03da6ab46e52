#include "scenes/transitions/DissolveFinder.h"

#include <algorithm>
#include <cmath>

namespace scenedetect {
namespace {

// Of one dissolve.
constexpr std::int64_t kFarthestMiddle = 8;
constexpr std::int64_t kLeastCount = 8;
// A frame as uniform as this is at rest in a fade.
constexpr std::int32_t kUniform = 9;
// Of the sums of their ends', in per cent: how far a window's figures may be off those of mixed pictures.
constexpr double kMostOff = 16;

constexpr std::int64_t Square(std::int64_t value) {
    return value * value;
}

// Begin and end included.
struct Window {
    std::int64_t begin;
    std::int64_t end;
    // The mean square of what two pictures differ by that have nothing in common but variances and levels.
    std::int64_t apart;

    [[nodiscard]] std::int64_t Length() const { return end - begin; }
};

// How far a figure is off what it is in mixed pictures, where share a of the second one is in: (1-a)^2 of the
// first one's and a^2 of the second one's, if they have nothing in common, else so much of a(1-a) besides.
// Roots of the mean squares, in per cent of the sum of both ends'.
struct Offsets {
    double withNothingInCommon;
    double atBest;
};
template <typename Figure>
Offsets OffMixture(const Window& window, Figure figure) {
    const auto length = static_cast<double>(window.Length());
    const auto first = static_cast<double>(figure(window.begin));
    const auto last = static_cast<double>(figure(window.end));
    double squares = 0;
    double common = 0;
    double commonSquares = 0;
    const double step = 1 / length;
    for (std::int64_t i = 1; i < window.Length(); ++i) {
        const double share = static_cast<double>(i) * step;
        const double both = share * (1 - share);
        const double off = static_cast<double>(figure(window.begin + i)) - (1 - share) * (1 - share) * first -
                           share * share * last;
        squares += off * off;
        common += off * both;
        commonSquares += both * both;
    }
    const auto root = [&](double sum) {
        return 100 * std::sqrt(std::max(sum, 0.0) / (length + 1)) / (first + last);
    };
    return {root(squares), root(squares - common * common / commonSquares)};
}

bool HasStraightLevels(const MeasureRing& frames, const Window& window) {
    const std::int64_t length = window.Length();
    const std::int64_t most = std::max<std::int64_t>(Square(2), window.apart * Square(15) / Square(100));
    for (std::int64_t i = 1; i < length; ++i)
        if (Square(length * frames.At(window.begin + i).level - (length - i) * frames.At(window.begin).level -
                   i * frames.At(window.end).level) > Square(length) * most)
            return false;
    return true;
}

// Whether samples go from picture to picture, straight, and not astray like what moves.
bool GoesStraight(const MeasureRing& frames, const Window& window) {
    std::int32_t span = 8;
    while (span <= window.Length() / 2)
        span *= 2;
    const std::int64_t end = (window.begin + window.end + span) / 2;
    const std::int64_t distance = frames.Distance(end, span);
    const std::int64_t halves = frames.Distance(end, span / 2) + frames.Distance(end - span / 2, span / 2);
    // As far as pictures are that have nothing in common: the mean is about 0.8 of the root of the mean
    // square, of which 0.65 is enough.
    return Square(100 * distance * window.Length()) >= Square(std::int64_t{52} * span) * window.apart &&
           100 * distance >= 70 * halves;
}

} // namespace

std::int64_t DissolveFinder::CountMixed(const MeasureRing& frames, std::int64_t middle) {
    std::int64_t count = 0;
    const std::int64_t longest = std::min({kLongest, middle, frames.End() - 1 - middle});
    for (std::int64_t half = kShortest; half <= longest; ++half) {
        const std::int64_t begin = middle - half;
        const std::int64_t end = middle + half;
        if (At(end).from > begin)
            break;
        // Of one picture a half of both is to be expected at the middle, of a mixture a quarter.
        if (12 * At(middle).detail >= 5 * (At(begin).detail + At(end).detail))
            continue;
        const auto variance = [&](std::int64_t at) { return frames.At(at).distances.variance; };
        const Window window{begin, end,
                            variance(begin) + variance(end) + Square(frames.LevelStep(begin, end))};
        if (window.apart < Square(15) || !GoesStraight(frames, window) || !HasStraightLevels(frames, window))
            continue;
        const Offsets detail = OffMixture(window, [&](std::int64_t at) { return At(at).detail; });
        const double off = detail.withNothingInCommon + detail.atBest;
        if (off <= kMostOff && off + OffMixture(window, variance).withNothingInCommon <= kMostOff)
            ++count;
    }
    return count;
}

std::optional<std::int64_t> DissolveFinder::Note(const MeasureRing& frames, std::int64_t now) {
    if (frames.Has(now)) {
        const FrameMeasures& frame = frames.At(now);
        if (frame.distances.variance <= kUniform)
            m_from = now + 1;
        else if (frame.isCut)
            m_from = now;
        At(now) = {Square(frame.distances.detail), m_from};
    }
    const std::int64_t middle = now - kLongest;
    std::optional<std::int64_t> found;
    if (m_group.count != 0 && middle > m_group.last + kFarthestMiddle) {
        if (m_group.count >= kLeastCount && m_group.IsShort())
            found = m_group.sum / m_group.count;
        m_group = {};
    }
    if (const std::int64_t count = CountMixed(frames, middle); count != 0)
        m_group = {m_group.count == 0 ? middle : m_group.first, middle, m_group.sum + middle * count,
                   m_group.count + count};
    return found;
}

std::int64_t DissolveFinder::SettledBefore(std::int64_t now) const {
    const std::int64_t next = now - kLongest + 1;
    return m_group.count != 0 && m_group.IsShort() ? std::min(m_group.first, next) : next;
}

} // namespace scenedetect
