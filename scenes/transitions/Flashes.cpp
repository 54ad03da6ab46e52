#include "scenes/transitions/Flashes.h"

namespace scenedetect {
namespace {

// A smaller change is no flash; the dark frame of a fade is found by its level, and may differ by nothing.
constexpr std::int32_t kLeastFlash = 8;
// Brighter by as much than what is before and after.
constexpr std::int32_t kLeastRise = 8;

// Two frames of which one is before the cut and the other after it are alike: less than half as far apart as
// the two at the cut. Frames on either side of a true cut are as far apart as these, whichever are taken;
// under motion the two of a flash are as far apart as motion takes them in five frames.
bool ComesBack(const MeasureRing& frames, std::int64_t cut) {
    const std::int32_t jump = frames.At(cut).difference;
    for (std::int64_t after = cut; after <= cut + kLongestFlash; ++after)
        for (const std::int32_t span : kDistanceSpans) {
            if (span > kLongestFlash + 1)
                break;
            const std::int32_t distance = frames.Distance(after, span);
            if (after - span < cut && distance != kNoDistance && 2 * distance <= jump)
                return true;
        }
    return false;
}

bool IsJump(const MeasureRing& frames, std::int64_t cut) {
    return frames.Has(cut) && frames.At(cut).isCut && frames.At(cut).difference >= kLeastFlash;
}

// The other edge of a flash between unlike pictures; the cut itself where there is none.
std::int64_t OtherEdge(const MeasureRing& frames, std::int64_t cut) {
    for (std::int64_t other = cut - kLongestFlash; other <= cut + kLongestFlash; ++other) {
        if (other == cut || !IsJump(frames, other) || ComesBack(frames, other))
            continue;
        const auto [first, end] = std::minmax(cut, other);
        bool isBrighter = frames.Has(first - 1);
        for (std::int64_t frame = first; frame < end && isBrighter; ++frame)
            isBrighter = frames.At(frame).level >=
                         std::max(frames.At(first - 1).level, frames.At(end).level) + kLeastRise;
        if (isBrighter)
            return other;
    }
    return cut;
}

// A flash brightens all samples, so that the difference is the rise of the level; at a true cut it is more.
std::int32_t BeyondLevel(const MeasureRing& frames, std::int64_t cut) {
    return frames.At(cut).difference - frames.LevelStep(cut, cut - 1);
}

} // namespace

bool IsFlashEdge(const MeasureRing& frames, std::int64_t cut) {
    if (!IsJump(frames, cut) || !frames.Has(cut - 1))
        return false;
    if (ComesBack(frames, cut))
        return true;
    const std::int64_t other = OtherEdge(frames, cut);
    if (other == cut)
        return false;
    // Where nothing tells, the scene begins after the flash.
    const std::int32_t difference = BeyondLevel(frames, cut) - BeyondLevel(frames, other);
    return difference != 0 ? difference < 0 : cut < other;
}

} // namespace scenedetect
