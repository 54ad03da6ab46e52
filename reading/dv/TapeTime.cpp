#include "reading/dv/TapeTime.h"

#include "reading/dv/DvPacks.h"

#include <cstdlib>

namespace scenedetect {
namespace {

template <typename Read>
auto FirstSound(const DifPacks& packs, std::uint8_t header, Read read) {
    decltype(read(*packs.begin())) value;
    for (const DifPack pack : packs)
        if (pack[0] == header)
            if ((value = read(pack)))
                break;
    return value;
}

} // namespace

TapeTime TapeTimeOf(std::span<const std::uint8_t> frame, DvSystem system) {
    // All sequences bear the same; a few of them are enough to get past a damaged one.
    constexpr int kSequences = 4;
    TapeTime time;
    time.system = system;
    if (const auto timecode = FirstSound(DifPacks(frame, kSubcodePacks, kSequences), kPackTimecode,
                                         [system](DifPack pack) { return TimecodeOf(pack, system); }))
        time.frames = FrameCountOf(*timecode, system);
    if (const auto recorded = FirstSound(DifPacks(frame, kVauxPacks, kSequences), kPackRecordingTime, TimeOf))
        time.recorded = recorded->count();
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
