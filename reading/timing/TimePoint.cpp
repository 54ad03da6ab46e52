#include "reading/timing/TimePoint.h"

#include "reading/base/HostError.h"

#include <algorithm>
#include <cstdio>
#include <regex>

namespace scenedetect {
namespace {

constexpr std::int64_t kNanoseconds = 1'000'000'000;

std::int64_t Number(const std::string& digits) {
    return digits.empty() ? 0 : std::stoll(digits);
}

// Up to nine digits after the point.
std::int64_t Decimals(std::string digits) {
    digits.resize(9, '0');
    return Number(digits);
}

std::string RateText(Ratio rate) {
    char text[64];
    std::snprintf(text, sizeof text, "%.5g frames per second", rate.Value());
    return text;
}

std::int64_t FrameOf(const TimePoint& point, const TimecodePoint& timecode, Ratio rate) {
    FrameNumbering numbering = NumberingOf(rate);
    if (timecode.isDropFrame && !numbering.IsDropFrame())
        throw HostError(point.text + ": drop-frame timecode (;) does not go with " + RateText(rate) +
                        "; write : before the frames");
    if (!timecode.isDropFrame)
        numbering.dropped = 0;
    if (const auto frame = FrameOfTimecode(timecode.fields, numbering))
        return *frame;
    if (timecode.fields.frames >= numbering.framesPerSecond)
        throw HostError(point.text + ": at " + RateText(rate) + " the last frame of a second is " +
                        std::to_string(numbering.framesPerSecond - 1));
    throw HostError(point.text + ": drop-frame timecode has no such number; this minute begins with ;0" +
                    std::to_string(numbering.dropped));
}

} // namespace

TimePoint ParseTimePoint(const std::string& text) {
    static const std::regex kFrames("[0-9]{1,12}");
    static const std::regex kSeconds("([0-9]{1,9})(?:[.]([0-9]{1,9}))?s");
    static const std::regex kClock("([0-9]{1,4}):([0-5][0-9]):([0-5][0-9])(?:[.]([0-9]{1,9}))?");
    static const std::regex kTimecode("([0-9]{1,4}):([0-5][0-9]):([0-5][0-9])([:;])([0-9]{2,3})");
    std::smatch part;
    if (std::regex_match(text, part, kFrames))
        return {FramePoint{Number(text)}, text};
    if (std::regex_match(text, part, kSeconds))
        return {ClockPoint{Number(part[1]) * kNanoseconds + Decimals(part[2])}, text};
    if (std::regex_match(text, part, kClock)) {
        const std::int64_t seconds = (Number(part[1]) * 60 + Number(part[2])) * 60 + Number(part[3]);
        return {ClockPoint{seconds * kNanoseconds + Decimals(part[4])}, text};
    }
    if (std::regex_match(text, part, kTimecode)) {
        const TimecodeFields fields{Number(part[1]), std::stoi(part[2]), std::stoi(part[3]),
                                    std::stoi(part[5])};
        return {TimecodePoint{fields, part[4] == ";"}, text};
    }
    throw HostError("not a time: '" + text +
                    "'; write frames (75), seconds (2.5s), HH:MM:SS.nnn, or timecode (HH:MM:SS:FF, with "
                    "drop-frame HH:MM:SS;FF)");
}

std::string TimePointFault(const std::string& text) {
    try {
        static_cast<void>(ParseTimePoint(text));
        return "";
    } catch (const HostError& error) {
        return error.what();
    }
}

TimePosition Resolve(const TimePoint& point, const TimeScale& scale, const FilePlace& from) {
    if (const auto* frames = std::get_if<FramePoint>(&point.point))
        return {from.frame + frames->frame, 0};
    const Ratio frameLength = scale.rate.Inverse();
    std::int64_t time = from.time;
    if (const auto* clock = std::get_if<ClockPoint>(&point.point))
        time += Rescale(clock->nanoseconds, {1, kNanoseconds}, scale.unit);
    else
        time += Rescale(FrameOf(point, std::get<TimecodePoint>(point.point), scale.rate), frameLength,
                        scale.unit);
    const std::int64_t halfFrame = Rescale(1, frameLength, scale.unit) / 2;
    return {std::nullopt, std::max<std::int64_t>(0, time - halfFrame)};
}

} // namespace scenedetect
