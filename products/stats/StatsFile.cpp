#include "products/stats/StatsFile.h"

#include "scenes/ParameterNames.h"

#include <limits>

namespace scenedetect {

std::vector<StatsNumber> NumbersOf(StatsSettings& settings) {
    constexpr std::int32_t kMost = std::numeric_limits<std::int32_t>::max();
    TimeScale& scale = settings.scale;
    std::vector<StatsNumber> numbers = {{"unit-num", &scale.unit.num, 1, kMost},
                                        {"unit-den", &scale.unit.den, 1, kMost},
                                        {"rate-num", &scale.rate.num, 1, kMost},
                                        {"rate-den", &scale.rate.den, 1, kMost}};
    for (std::size_t i = 0; i < kDetectionParameters.size(); ++i) {
        const ParameterRange& range = kDetectionParameters[i];
        numbers.push_back({kParameterNames[i], &(settings.parameters.*range.value), range.least, range.most});
    }
    return numbers;
}

} // namespace scenedetect
