#include "hosts/shared/TapeTime.h"

#include "filter/TimecodeFrames.h"

#include <cstdlib>

namespace scenedetect {
namespace {

struct Field {
    std::uint8_t bits; // that hold the number; the others are flags
    int limit;
};
constexpr Field kSeconds{0x7F, 60};
constexpr Field kMinutes{0x7F, 60};
constexpr Field kHours{0x3F, 24};

// Two decimal digits; nothing for what is no such number.
std::optional<int> Number(std::uint8_t byte, const Field& field) {
    const int high = (byte & field.bits) >> 4;
    const int low = byte & 0x0F;
    const int number = high * 10 + low;
    return low <= 9 && number < field.limit ? std::optional(number) : std::nullopt;
}

std::optional<std::int64_t> SecondsOf(DifPack pack) {
    const auto hours = Number(pack[4], kHours);
    const auto minutes = Number(pack[3], kMinutes);
    const auto seconds = Number(pack[2], kSeconds);
    if (!hours || !minutes || !seconds)
        return std::nullopt;
    return TimeToFrames(*hours, *minutes, *seconds, 0, 1);
}

std::optional<std::int64_t> FramesOf(DifPack pack, int rate) {
    constexpr std::uint8_t kFrameBits = 0x3F;
    constexpr std::uint8_t kDropFrame = 0x40;
    const auto seconds = SecondsOf(pack);
    const auto frames = Number(pack[1], {kFrameBits, rate});
    if (!seconds || !frames)
        return std::nullopt;
    const auto number = static_cast<std::int32_t>(*seconds * rate + *frames);
    return (pack[1] & kDropFrame) != 0 ? CorrectDropFrame(number, rate) : number;
}

template <typename Read>
std::optional<std::int64_t> FirstSound(const DifPacks& packs, std::uint8_t header, Read read) {
    for (const DifPack pack : packs)
        if (pack[0] == header)
            if (const auto value = read(pack))
                return value;
    return std::nullopt;
}

constexpr int RateOf(DvSystem system) {
    return system == DvSystem::Lines625 ? 25 : 30;
}

} // namespace

TapeTime TapeTimeOf(std::span<const std::uint8_t> frame, DvSystem system) {
    // All sequences bear the same; a few of them are enough to get past a damaged one.
    constexpr int kSequences = 4;
    TapeTime time;
    time.system = system;
    time.frames = FirstSound(DifPacks(frame, kSubcodePacks, kSequences), kPackTimecode,
                             [system](DifPack pack) { return FramesOf(pack, RateOf(system)); });
    time.recorded = FirstSound(DifPacks(frame, kVauxPacks, kSequences), kPackRecordingTime, SecondsOf);
    return time;
}

std::optional<std::int64_t> FramesApart(const TapeTime& earlier, const TapeTime& later) {
    if (!earlier.frames || !later.frames || earlier.system != later.system ||
        *later.frames <= *earlier.frames)
        return std::nullopt;
    const std::int64_t apart = *later.frames - *earlier.frames;
    const int rate = RateOf(earlier.system);
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
