#include "hosts/kxscenes/TimeScale.h"

#include "platform/Text.h"
#include "support/Timecode.h"

extern "C" {
#include <libavutil/mathematics.h>
}

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <limits>

namespace scenedetect {
namespace {

// Rates as files round them: 29.97 and 30000/1001 are the same timecode.
constexpr double kRateTolerance = 1e-4;

bool IsAbout(double value, double expected) {
    return std::abs(value - expected) < expected * kRateTolerance;
}

// Frame numbers that each minute but every tenth leaves out; 0 without drop-frame.
std::int64_t DroppedPerMinute(double rate) {
    if (IsAbout(rate, 30000.0 / 1001.0))
        return 2;
    if (IsAbout(rate, 60000.0 / 1001.0))
        return 4;
    return 0;
}

// From a count of frames to the number that drop-frame timecode gives the frame.
std::int64_t DropFrameNumber(std::int64_t frame, std::int64_t wholeRate, std::int64_t dropped) {
    const std::int64_t perMinute = wholeRate * 60 - dropped;
    const std::int64_t perTenMinutes = wholeRate * 600 - dropped * 9;
    const std::int64_t inTen = frame % perTenMinutes;
    // The first of ten minutes is whole, hence the frames that it has more than the others.
    const std::int64_t shortMinutes = inTen < wholeRate * 60 ? 0 : (inTen - dropped) / perMinute;
    return frame + dropped * (9 * (frame / perTenMinutes) + shortMinutes);
}

} // namespace

std::int64_t FrameDurationOf(AVRational rate) {
    return std::max<std::int64_t>(1, av_rescale(10'000'000, rate.den, rate.num));
}

std::string TimecodeText(std::int64_t time, const TimeScale& scale) {
    const std::int64_t frame = av_rescale_q(time, scale.unit, av_inv_q(scale.rate));
    const std::int64_t wholeRate = std::max<std::int64_t>(1, std::llround(av_q2d(scale.rate)));
    const std::int64_t dropped = DroppedPerMinute(av_q2d(scale.rate));
    const std::int64_t number = dropped != 0 ? DropFrameNumber(frame, wholeRate, dropped) : frame;

    std::wstring text;
    FramesToTimecodeText(text, static_cast<std::int32_t>(std::clamp<std::int64_t>(number, 0, INT32_MAX)),
                         true, static_cast<std::int32_t>(wholeRate));
    if (dropped != 0)
        text[text.rfind(L':')] = L';';
    return Utf8FromWide(text);
}

std::string SecondsText(std::int64_t time, const TimeScale& scale) {
    const std::int64_t milliseconds = av_rescale_q(time, scale.unit, AVRational{1, 1000});
    char text[40];
    std::snprintf(text, sizeof text, "%lld.%03lld", static_cast<long long>(milliseconds / 1000),
                  static_cast<long long>(milliseconds % 1000));
    return text;
}

} // namespace scenedetect
