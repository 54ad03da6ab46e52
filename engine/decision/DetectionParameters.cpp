#include "engine/decision/DetectionParameters.h"

#include <algorithm>

namespace scenedetect {

std::atomic<std::int32_t> g_maxSceneLength{0};

std::int32_t ParameterRange::Of(const DetectionParameters& parameters) const {
    if (value == &DetectionParameters::longestScene)
        return std::max(parameters.LongestScene(), 0);
    return parameters.*value;
}

} // namespace scenedetect
