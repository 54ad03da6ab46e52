#include "products/outputs/SceneTable.h"

#include "products/outputs/NameText.h"
#include "reading/base/HostError.h"

#include <algorithm>
#include <cmath>
#include <cstdio>

namespace scenedetect {
namespace {

FrameNumbering NumberingFrom(const SourceTimecode& first, Ratio rate) {
    FrameNumbering numbering = NumberingOf(rate);
    if (!first.isDropFrame)
        numbering.dropped = 0;
    return numbering;
}

std::int64_t StartFrom(const SourceTimecode& first, Ratio rate) {
    return Rescale(first.frame, {1, first.framesPerSecond}, {1, NumberingOf(rate).framesPerSecond});
}

} // namespace

bool HasConstantRate(const SceneTable& table) {
    const auto isInStep = [&table](const FilePlace& place) {
        return EditFrame(place, table.scale) == place.frame;
    };
    return std::all_of(table.scenes.begin(), table.scenes.end(), [&isInStep](const SceneSpan& scene) {
        return isInStep(scene.start) && isInStep(scene.end);
    });
}

std::int64_t EditFrame(const FilePlace& place, const TimeScale& scale) {
    return Rescale(place.time, scale.unit, scale.rate.Inverse());
}

std::int64_t EditFrameCount(const SceneTable& table) {
    const std::int64_t last = table.scenes.empty() ? 0 : EditFrame(table.scenes.back().end, table.scale);
    return HasConstantRate(table) ? std::max(last, table.frameCount) : last;
}

void RequireMediaUrl(const SceneTable& table, const std::string& format) {
    if (MediaUrl(table.input).empty())
        throw HostError(format + " points to the video's file, and the standard input has none; "
                                 "give the file's name, or choose another format");
}

NominalRate NominalRateOf(const SceneTable& table, const std::string& format, std::int32_t most) {
    constexpr double kNtsc = 1000.0 / 1001.0;
    constexpr double kTolerance = 2e-4; // 23.98 and 23.976 are meant to be the same
    const double rate = table.scale.rate.Value();
    const double whole = std::round(rate);
    const auto isAbout = [rate](double value) { return std::abs(rate - value) < value * kTolerance; };
    if (whole >= 1 && whole <= most && (isAbout(whole) || isAbout(whole * kNtsc)))
        return {static_cast<std::int32_t>(whole), !isAbout(whole)};
    char text[32];
    std::snprintf(text, sizeof text, "%.6g", rate);
    throw HostError(table.input + ": " + format + " has no timecode for " + text +
                    " frames per second; choose another format");
}

FrameNumbering SourceNumbering(const SceneTable& table) {
    return table.startTimecode ? NumberingFrom(*table.startTimecode, table.scale.rate)
                               : NumberingOf(table.scale.rate);
}

std::int64_t SourceStart(const SceneTable& table) {
    return table.startTimecode ? StartFrom(*table.startTimecode, table.scale.rate) : 0;
}

std::string SourceTimecodeText(const FilePlace& place, const TimeScale& scale, const SourceTimecode& first) {
    return FrameTimecode(StartFrom(first, scale.rate) + EditFrame(place, scale),
                         NumberingFrom(first, scale.rate));
}

std::string SceneTimecode(const TapeTexts& tape, const FilePlace& place, const TimeScale& scale,
                          const std::optional<SourceTimecode>& first) {
    return tape.timecode.empty() && first ? SourceTimecodeText(place, scale, *first) : tape.timecode;
}

std::vector<EditSpan> EditSpans(const SceneTable& table) {
    const std::int64_t sourceStart = SourceStart(table);
    std::vector<EditSpan> spans;
    for (std::size_t i = 0; i < table.scenes.size(); ++i) {
        const std::int64_t start = EditFrame(table.scenes[i].start, table.scale);
        const std::int64_t frames = EditFrame(table.scenes[i].end, table.scale) - start;
        if (frames != 0)
            spans.push_back({i, sourceStart + start, frames});
    }
    return spans;
}

std::int64_t MediaTime(const SceneTable& table, const FilePlace& place) {
    constexpr Ratio kMicroseconds{1, 1'000'000};
    return place.time + Rescale(table.delay, kMicroseconds, table.scale.unit);
}

std::string ClipName(const SceneTable& table, std::size_t index) {
    if (const std::string& name = table.scenes[index].name; !name.empty())
        return name;
    char number[32];
    std::snprintf(number, sizeof number, " %03zu", index + 1);
    return PlainName(table.name) + number;
}

} // namespace scenedetect
