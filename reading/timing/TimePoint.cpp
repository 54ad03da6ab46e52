#include "reading/timing/TimePoint.h"

#include "reading/base/HostError.h"
#include "reading/timing/NumberScanner.h"

#include <algorithm>
#include <cstdio>

namespace scenedetect {
namespace {

constexpr std::int64_t kNanoseconds = 1'000'000'000;

constexpr std::size_t kDecimals = 9;
constexpr std::int64_t kSixty = 60; // minutes, seconds

// The nanoseconds after a point, if there is one.
std::optional<std::int64_t> Decimals(NumberScanner& text) {
    if (text.Mark(".") == '\0')
        return 0;
    const auto digits = text.Digits(1, kDecimals);
    if (!digits)
        return std::nullopt;
    std::string nanoseconds(*digits);
    nanoseconds.resize(kDecimals, '0');
    return std::stoll(nanoseconds);
}

std::optional<FramePoint> ParseFrame(NumberScanner text) {
    const auto frame = text.Number(1, 12);
    return frame && text.IsAtEnd() ? std::optional(FramePoint{*frame}) : std::nullopt;
}

std::optional<ClockPoint> ParseSeconds(NumberScanner text) {
    const auto seconds = text.Number(1, 9);
    const auto decimals = Decimals(text);
    if (!seconds || !decimals || text.Mark("s") == '\0' || !text.IsAtEnd())
        return std::nullopt;
    return ClockPoint{*seconds * kNanoseconds + *decimals};
}

// HH:MM:SS and what is left of the text.
std::optional<TimecodeFields> TakeClock(NumberScanner& text) {
    const auto hours = text.Number(1, 4);
    if (!hours || text.Mark(":") == '\0')
        return std::nullopt;
    const auto minutes = text.Number(2, 2);
    if (!minutes || *minutes >= kSixty || text.Mark(":") == '\0')
        return std::nullopt;
    const auto seconds = text.Number(2, 2);
    if (!seconds || *seconds >= kSixty)
        return std::nullopt;
    return TimecodeFields{*hours, static_cast<int>(*minutes), static_cast<int>(*seconds), 0};
}

std::optional<ClockPoint> ParseClock(NumberScanner text) {
    const auto clock = TakeClock(text);
    const auto decimals = Decimals(text);
    if (!clock || !decimals || !text.IsAtEnd())
        return std::nullopt;
    const std::int64_t seconds = (clock->hours * kSixty + clock->minutes) * kSixty + clock->seconds;
    return ClockPoint{seconds * kNanoseconds + *decimals};
}

std::optional<TimecodePoint> ParseTimecode(NumberScanner text) {
    auto fields = TakeClock(text);
    const char mark = text.Mark(":;");
    const auto frames = text.Number(2, 3);
    if (!fields || mark == '\0' || !frames || !text.IsAtEnd())
        return std::nullopt;
    fields->frames = static_cast<int>(*frames);
    return TimecodePoint{*fields, mark == ';'};
}

std::string RateText(Ratio rate) {
    char text[64];
    std::snprintf(text, sizeof text, "%.5g frames per second", rate.Value());
    return text;
}

} // namespace

std::int64_t FrameOf(const TimecodePoint& timecode, const std::string& text, Ratio rate) {
    FrameNumbering numbering = NumberingOf(rate);
    if (timecode.isDropFrame && !numbering.IsDropFrame())
        throw HostError(text + ": drop-frame timecode (;) does not go with " + RateText(rate) +
                        "; write : before the frames");
    if (!timecode.isDropFrame)
        numbering.dropped = 0;
    if (const auto frame = FrameOfTimecode(timecode.fields, numbering))
        return *frame;
    if (timecode.fields.frames >= numbering.framesPerSecond)
        throw HostError(text + ": at " + RateText(rate) + " the last frame of a second is " +
                        std::to_string(numbering.framesPerSecond - 1));
    throw HostError(text + ": drop-frame timecode has no such number; this minute begins with ;0" +
                    std::to_string(numbering.dropped));
}

TimePoint ParseTimePoint(const std::string& text) {
    const NumberScanner scanner(text);
    if (const auto frame = ParseFrame(scanner))
        return {*frame, text};
    if (const auto seconds = ParseSeconds(scanner))
        return {*seconds, text};
    if (const auto clock = ParseClock(scanner))
        return {*clock, text};
    if (const auto timecode = ParseTimecode(scanner))
        return {*timecode, text};
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
        time += Rescale(FrameOf(std::get<TimecodePoint>(point.point), point.text, scale.rate), frameLength,
                        scale.unit);
    return NearestTo(time, scale);
}

TimePosition NearestTo(std::int64_t time, const TimeScale& scale) {
    const std::int64_t halfFrame = Rescale(1, scale.rate.Inverse(), scale.unit) / 2;
    return {std::nullopt, std::max<std::int64_t>(0, time - halfFrame)};
}

} // namespace scenedetect
