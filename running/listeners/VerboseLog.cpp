#include "running/listeners/VerboseLog.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <string>

namespace scenedetect {
namespace {

std::string FormatText(const PictureFormat& format) {
    std::string name = "RGB, " + std::to_string(format.bitCount) + " bits";
    if (format.fourcc != 0) {
        name.clear();
        for (int shift = 0; shift < 32; shift += 8)
            name += static_cast<char>(format.fourcc >> shift);
    }
    return std::to_string(format.width) + 'x' + std::to_string(std::abs(format.height)) + ' ' + name;
}

std::string RateText(Ratio rate) {
    const bool isWhole = rate.den == 1;
    return std::to_string(rate.num) + (isWhole ? "" : '/' + std::to_string(rate.den)) + " frames/s";
}

} // namespace

void VerboseLog::Begin(const RunInfo& info) {
    m_input = info.input;
    m_console.Detail(info.input + ": " + info.reader + "; " + FormatText(info.format) + ", " +
                     RateText(info.scale.rate) + "; filters: " + info.methods);
}

void VerboseLog::End(const RunEnd& end) {
    const std::chrono::duration<double> elapsed = std::chrono::steady_clock::now() - m_begin;
    char text[100];
    std::snprintf(text, sizeof text, "%lld frames in %.2f s, %.0f frames/s",
                  static_cast<long long>(end.samples), elapsed.count(),
                  static_cast<double>(end.samples) / std::max(elapsed.count(), 1e-3));
    m_console.Detail(m_input + ": " + text);
}

} // namespace scenedetect
