#include "scenes/ParameterNames.h"

namespace scenedetect {

std::string AreaText(const DetectionParameters& parameters) {
    std::string text;
    for (const std::int32_t mille :
         {parameters.areaLeft, parameters.areaTop, parameters.areaWidth, parameters.areaHeight}) {
        if (!text.empty())
            text += ',';
        text += std::to_string(mille / 10);
        if (mille % 10 != 0)
            text += '.' + std::to_string(mille % 10);
        text += '%';
    }
    return text;
}

} // namespace scenedetect
