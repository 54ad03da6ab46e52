#include "products/stats/StatsFile.h"

#include <limits>

namespace scenedetect {

std::vector<StatsNumber> NumbersOf(StatsSettings& settings) {
    constexpr std::int32_t kMost = std::numeric_limits<std::int32_t>::max();
    TimeScale& scale = settings.scale;
    std::vector<StatsNumber> numbers = {{"unit-num", &scale.unit.num, 1, kMost},
                                        {"unit-den", &scale.unit.den, 1, kMost},
                                        {"rate-num", &scale.rate.num, 1, kMost},
                                        {"rate-den", &scale.rate.den, 1, kMost}};
    for (const ParameterFacts& facts : kDetectionParameters)
        numbers.push_back({facts.name, &(settings.parameters.*facts.value), facts.least, facts.most});
    return numbers;
}

} // namespace scenedetect
