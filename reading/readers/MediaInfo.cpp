#include "reading/readers/MediaInfo.h"

#include "reading/dv/DvPacks.h"
#include "reading/timing/FrameNumbering.h"

#include <cstdio>

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
    TimecodeFields fields;
    long long hours = 0;
    char mark[2] = "";
    int length = 0;
    if (std::sscanf(text.c_str(), "%2lld%*1[:;.]%2d%*1[:;.]%2d%1[:;.]%3d%n", &hours, &fields.minutes,
                    &fields.seconds, mark, &fields.frames, &length) != 5 ||
        static_cast<std::size_t>(length) != text.size())
        return std::nullopt;
    fields.hours = hours;
    FrameNumbering numbering = NumberingOf(rate);
    if (mark[0] == ':')
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
    if (packs.timecode)
        info.startTimecode = SourceTimecode{FrameCountOf(*packs.timecode, system),
                                            packs.timecode->isDropFrame, DvTimecodeRate(system)};
    return info;
}

} // namespace scenedetect
