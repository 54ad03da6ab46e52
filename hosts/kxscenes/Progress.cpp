#include "hosts/kxscenes/Progress.h"

#include <algorithm>
#include <cmath>
#include <cstdio>

namespace scenedetect {

std::string ProgressText(std::int64_t frames, double fraction, std::chrono::duration<double> elapsed) {
    const double seconds = std::max(elapsed.count(), 1e-3);
    char text[120];
    std::snprintf(text, sizeof text, "%lld frames  %.0f fps", static_cast<long long>(frames),
                  static_cast<double>(frames) / seconds);
    std::string line = text;
    if (fraction > 0) {
        const long long left = std::llround(seconds * (1 - fraction) / fraction);
        std::snprintf(text, sizeof text, "  %.0f%%  %lld:%02lld left", fraction * 100, left / 60, left % 60);
        line += text;
    }
    return line;
}

} // namespace scenedetect
