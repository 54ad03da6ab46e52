#include "scenes/transitions/DissolveFinder.h"

#include <algorithm>
#include <utility>

namespace scenedetect {
namespace {

// Of windows, in frames: the step is from picture to picture, so these find dissolves of 7 to 53 frames.
constexpr std::int64_t kShortest = 8;
constexpr std::int64_t kLongest = 52;
constexpr std::int64_t kLengthStep = 2;
// Of one dissolve.
constexpr std::int64_t kFarthestMiddle = 8;
constexpr std::int64_t kLeastCount = 8;
// A frame as uniform as this is at rest in a fade.
constexpr std::int32_t kUniform = 9;

constexpr std::int64_t Square(std::int64_t value) {
    return value * value;
}

// A window, begin and end included, with what its ends say.
struct Window {
    std::int64_t begin;
    std::int64_t end;
    std::int64_t variances; // sum of those of both ends
    std::int64_t levelStep;

    [[nodiscard]] std::int64_t Length() const { return end - begin; }
    [[nodiscard]] std::int64_t Middle() const { return (begin + end) / 2; }
    // The mean square of what two pictures differ by that have nothing in common but these.
    [[nodiscard]] std::int64_t Apart() const { return variances + Square(levelStep); }
};

// What the window asks for, in per cent.
struct Strictness {
    std::int64_t deviation; // of variances from the parabola, of their sum, at most
    std::int64_t bend;      // of levels from the line, of how far pictures are apart, at most
    std::int64_t motion;    // of distances outside, the one inside at least
};
// Motion seldom moves the level far, and in a line.
constexpr std::int64_t kFarLevels = 16;
constexpr Strictness kWithLevelStep{7, 12, 0};
constexpr Strictness kWithoutLevelStep{4, 8, 85};

std::int64_t VarianceAt(const MeasureRing& frames, std::int64_t frame) {
    return frames.At(frame).distances.variance;
}

// Mixed pictures have less contrast: where share a of the second one is in, a variance of (1-a)^2 of the
// first one's and a^2 of the second one's. In whole numbers: all times the square of the length.
bool LosesContrast(const MeasureRing& frames, const Window& window, std::int64_t percent) {
    const std::int64_t length = window.Length();
    const std::int64_t first = VarianceAt(frames, window.begin);
    const std::int64_t last = VarianceAt(frames, window.end);
    std::int64_t squares = 0;
    for (std::int64_t i = 1; i < length; ++i)
        squares += Square(Square(length) * VarianceAt(frames, window.begin + i) - Square(length - i) * first -
                          Square(i) * last);
    // The mean square's root is at most such a part of the sum.
    return squares / (length + 1) <= Square(Square(length) * window.variances * percent / 100);
}

bool HasStraightLevels(const MeasureRing& frames, const Window& window, std::int64_t percent) {
    const std::int64_t length = window.Length();
    const std::int64_t most =
        std::max<std::int64_t>(Square(2), window.Apart() * Square(percent) / Square(100));
    for (std::int64_t i = 1; i < length; ++i)
        if (Square(length * frames.At(window.begin + i).level - (length - i) * frames.At(window.begin).level -
                   i * frames.At(window.end).level) > Square(length) * most)
            return false;
    return true;
}

// How far frames are apart next to a window; 0 where a cut says nothing of the motion, or the film ends.
std::int64_t Outside(const MeasureRing& frames, std::int64_t end, std::int32_t span) {
    return frames.HasCut(end - span + 1, end) ? 0 : std::max(0, frames.Distance(end, span));
}

// Whether samples go from picture to picture, straight, and not astray like what moves.
bool GoesStraight(const MeasureRing& frames, const Window& window, std::int64_t percent) {
    std::int32_t span = static_cast<std::int32_t>(kShortest);
    while (2 * span <= window.Length())
        span *= 2;
    const std::int64_t end = window.Middle() + span / 2;
    const std::int64_t distance = frames.Distance(end, span);
    const std::int64_t halves = frames.Distance(end, span / 2) + frames.Distance(end - span / 2, span / 2);
    const std::int64_t motion =
        std::max(Outside(frames, window.begin, span), Outside(frames, window.end + span, span));
    // As far as pictures are that have nothing in common: the mean is about 0.8 of the root of the mean
    // square, of which 0.65 is enough.
    return Square(100 * distance * window.Length()) >= Square(52 * span) * window.Apart() &&
           100 * distance >= 80 * halves && 100 * distance >= percent * motion;
}

bool IsMixed(const MeasureRing& frames, std::int64_t begin, std::int64_t end, std::int64_t mostDifference) {
    const Window window{begin, end, VarianceAt(frames, begin) + VarianceAt(frames, end),
                        frames.LevelStep(begin, end)};
    // Unlike pictures, with no jump between them, and a dip of a quarter at least.
    if (window.variances < 60 || window.Apart() < Square(15) ||
        25 * Square(mostDifference) > window.Apart() ||
        8 * VarianceAt(frames, window.Middle()) > 3 * window.variances)
        return false;
    const Strictness& strictness = window.levelStep >= kFarLevels ? kWithLevelStep : kWithoutLevelStep;
    return GoesStraight(frames, window, strictness.motion) &&
           HasStraightLevels(frames, window, strictness.bend) &&
           LosesContrast(frames, window, strictness.deviation);
}

} // namespace

std::optional<std::int64_t> DissolveFinder::Note(const MeasureRing& frames, std::int64_t now) {
    const std::int64_t end = now - kLookAhead;
    std::int64_t mostDifference = 0;
    for (std::int64_t begin = end; frames.Has(begin) && VarianceAt(frames, begin) > kUniform; --begin) {
        const std::int64_t length = end - begin;
        if (length >= kShortest && (length - kShortest) % kLengthStep == 0 &&
            IsMixed(frames, begin, end, mostDifference))
            Add((begin + end) / 2);
        if (length == kLongest || frames.At(begin).isCut)
            break;
        mostDifference = std::max<std::int64_t>(mostDifference, frames.At(begin).difference);
    }
    for (Group& group : m_groups) {
        if (group.count == 0 || end - kLongest / 2 <= group.last + kFarthestMiddle)
            continue;
        const Group closed = std::exchange(group, {});
        if (closed.count >= kLeastCount && closed.IsShort())
            return closed.sum / closed.count;
    }
    return std::nullopt;
}

void DissolveFinder::Add(std::int64_t middle) {
    Group* free = nullptr;
    for (Group& group : m_groups) {
        if (group.count == 0) {
            free = &group;
        } else if (middle >= group.first - kFarthestMiddle && middle <= group.last + kFarthestMiddle) {
            group = {std::min(group.first, middle), std::max(group.last, middle), group.sum + middle,
                     group.count + 1};
            return;
        }
    }
    if (free)
        *free = {middle, middle, middle, 1};
}

std::int64_t DissolveFinder::SettledBefore(std::int64_t now) const {
    std::int64_t first = now - kLookAhead - kLongest / 2;
    for (const Group& group : m_groups)
        if (group.count != 0 && group.IsShort())
            first = std::min(first, group.first);
    return first;
}

} // namespace scenedetect
