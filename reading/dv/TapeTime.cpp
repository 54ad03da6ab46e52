#include "reading/dv/TapeTime.h"

#include "reading/dv/DvPacks.h"

#include <cstdlib>

namespace scenedetect {
TapeTime TapeTimeOf(std::span<const std::uint8_t> frame, DvSystem system) {
    const DvPacks packs = ReadDvPacks(frame, system);
    TapeTime time;
    time.system = system;
    if (packs.timecode)
        time.frames = FrameCountOf(*packs.timecode, system);
    if (packs.time)
        time.recorded = packs.time->count();
    return time;
}

std::optional<std::int64_t> FramesApart(const TapeTime& earlier, const TapeTime& later) {
    if (!earlier.frames || !later.frames || earlier.system != later.system ||
        *later.frames <= *earlier.frames)
        return std::nullopt;
    const std::int64_t apart = *later.frames - *earlier.frames;
    const int rate = DvTimecodeRate(earlier.system);
    if (earlier.recorded && later.recorded) {
        // A second for the clock's resolution, and one for a clock that was set to the tape's.
        constexpr int kToleranceSeconds = 2;
        const std::int64_t recorded = *later.recorded - *earlier.recorded;
        if (std::abs(recorded * rate - apart) > std::int64_t{kToleranceSeconds} * rate)
            return std::nullopt;
    }
    return apart;
}

} // namespace scenedetect
