#include "running/batch/Progress.h"

#include <algorithm>
#include <cmath>
#include <cstdio>

namespace scenedetect {
namespace {

std::string ClockText(long long seconds) {
    char text[40];
    if (seconds < 3600)
        std::snprintf(text, sizeof text, "%lld:%02lld", seconds / 60, seconds % 60);
    else
        std::snprintf(text, sizeof text, "%lld:%02lld:%02lld", seconds / 3600, seconds / 60 % 60,
                      seconds % 60);
    return text;
}

} // namespace

std::string ProgressText(std::int64_t frames, double fraction, std::chrono::duration<double> elapsed) {
    const double seconds = std::max(elapsed.count(), 1e-3);
    char text[120];
    std::snprintf(text, sizeof text, "%lld frames  %.0f fps", static_cast<long long>(frames),
                  static_cast<double>(frames) / seconds);
    std::string line = text;
    if (fraction > 0) {
        std::snprintf(text, sizeof text, "  %.0f%%  ", fraction * 100);
        line += text + ClockText(std::llround(seconds * (1 - fraction) / fraction)) + " left";
    }
    return line;
}

std::string ProductsText(std::int64_t frames, std::int64_t made, std::int64_t wanted, const char* products) {
    return std::to_string(frames) + " frames  " + std::to_string(made) + " of " + std::to_string(wanted) +
           ' ' + products;
}

} // namespace scenedetect
