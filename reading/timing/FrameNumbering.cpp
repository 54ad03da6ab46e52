#include "reading/timing/FrameNumbering.h"

#include "platform/Text.h"
#include "support/Timecode.h"
#include "support/TimecodeFrames.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace scenedetect {
namespace {

// Rates as files round them: 29.97 and 30000/1001 are the same timecode.
constexpr double kRateTolerance = 1e-4;

bool IsAbout(double value, double expected) {
    return std::abs(value - expected) < expected * kRateTolerance;
}

std::int32_t DroppedPerMinute(double rate) {
    if (IsAbout(rate, 30000.0 / 1001.0))
        return 2;
    if (IsAbout(rate, 60000.0 / 1001.0))
        return 4;
    return 0;
}

std::int64_t FramesPerTenMinutes(const FrameNumbering& numbering) {
    return std::int64_t{numbering.framesPerSecond} * 600 - std::int64_t{numbering.dropped} * 9;
}

// From a count of frames to the number that timecode gives the frame.
std::int64_t NumberOfFrame(std::int64_t frame, const FrameNumbering& numbering) {
    const std::int64_t wholeMinute = std::int64_t{numbering.framesPerSecond} * 60;
    const std::int64_t perTenMinutes = FramesPerTenMinutes(numbering);
    const std::int64_t inTen = frame % perTenMinutes;
    // The first of ten minutes is whole, hence the frames that it has more than the others.
    const std::int64_t shortMinutes =
        inTen < wholeMinute ? 0 : (inTen - numbering.dropped) / (wholeMinute - numbering.dropped);
    return frame + numbering.dropped * (9 * (frame / perTenMinutes) + shortMinutes);
}

} // namespace

std::int64_t FrameNumbering::FramesPerDay() const {
    return FramesPerTenMinutes(*this) * 6 * 24;
}

FrameNumbering NumberingOf(Ratio rate) {
    constexpr std::int64_t kMost = std::numeric_limits<std::int32_t>::max();
    const auto whole =
        static_cast<std::int32_t>(std::clamp<std::int64_t>(std::llround(rate.Value()), 1, kMost));
    return {whole, DroppedPerMinute(rate.Value())};
}

std::string NumberTimecode(std::int64_t number, const FrameNumbering& numbering) {
    constexpr std::int64_t kMost = std::numeric_limits<std::int32_t>::max();
    std::wstring text;
    FramesToTimecodeText(text, static_cast<std::int32_t>(std::clamp<std::int64_t>(number, 0, kMost)), true,
                         numbering.framesPerSecond);
    if (numbering.IsDropFrame())
        text[text.rfind(L':')] = L';';
    return Utf8FromWide(text);
}

std::string FrameTimecode(std::int64_t frame, const FrameNumbering& numbering) {
    return NumberTimecode(NumberOfFrame(frame, numbering), numbering);
}

std::optional<std::int64_t> FrameOfTimecode(const TimecodeFields& fields, const FrameNumbering& numbering) {
    const bool isDropped =
        fields.frames < numbering.dropped && fields.seconds == 0 && fields.minutes % 10 != 0;
    if (fields.frames >= numbering.framesPerSecond || isDropped)
        return std::nullopt;
    const std::int64_t seconds = (fields.hours * 60 + fields.minutes) * 60 + fields.seconds;
    return WithoutDropped(seconds * numbering.framesPerSecond + fields.frames, numbering.framesPerSecond,
                          numbering.dropped);
}

} // namespace scenedetect
