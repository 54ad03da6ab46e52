#include "reading/readers/MediaInfo.h"

#include "reading/dv/DvPacks.h"
#include "reading/timing/FrameNumbering.h"
#include "reading/timing/NumberScanner.h"

#include <array>
#include <cstddef>
#include <string_view>

namespace scenedetect {
namespace {

// Of the 720 columns; they stand for a little more than a picture of 4:3 or 16:9 is wide.
Ratio PixelAspectOf(DvSystem system, bool isWide) {
    if (system == DvSystem::Lines625)
        return isWide ? Ratio{64, 45} : Ratio{16, 15};
    return isWide ? Ratio{32, 27} : Ratio{8, 9};
}

} // namespace

std::optional<SourceTimecode> ParseSourceTimecode(const std::string& text, Ratio rate) {
    constexpr std::string_view kMarks = ":;.";
    NumberScanner scanner(text);
    std::array<std::int64_t, 4> numbers{};
    char mark = '\0';
    for (std::size_t i = 0; i < numbers.size(); ++i) {
        if (i != 0 && (mark = scanner.Mark(kMarks)) == '\0')
            return std::nullopt;
        const auto number = scanner.Number(1, i == numbers.size() - 1 ? 3 : 2);
        if (!number)
            return std::nullopt;
        numbers[i] = *number;
    }
    if (!scanner.IsAtEnd())
        return std::nullopt;
    const TimecodeFields fields{numbers[0], static_cast<int>(numbers[1]), static_cast<int>(numbers[2]),
                                static_cast<int>(numbers[3])};
    FrameNumbering numbering = NumberingOf(rate);
    if (mark == ':')
        numbering.dropped = 0;
    const auto frame = FrameOfTimecode(fields, numbering);
    if (!frame)
        return std::nullopt;
    return SourceTimecode{*frame, numbering.IsDropFrame(), numbering.framesPerSecond};
}

MediaInfo DvMediaInfo(std::span<const std::uint8_t> frame, DvSystem system) {
    constexpr int kWidth = 720;
    const DvPacks packs = ReadDvPacks(frame, system);
    MediaInfo info;
    info.width = kWidth;
    info.height = system == DvSystem::Lines625 ? 576 : 480;
    info.pixelAspect = PixelAspectOf(system, packs.aspect == DvAspect::Full16By9);
    if (packs.audio)
        info.audio = AudioFormat{packs.audio->channels, packs.audio->samplingRate};
    if (packs.timecode)
        info.startTimecode = SourceTimecode{FrameCountOf(*packs.timecode, system),
                                            packs.timecode->isDropFrame, DvTimecodeRate(system)};
    return info;
}

} // namespace scenedetect
