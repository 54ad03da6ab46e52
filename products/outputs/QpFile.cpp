#include "products/outputs/SceneTable.h"
#include "products/outputs/SceneWriters.h"

namespace scenedetect {

std::string QpFile(const SceneTable& table) {
    std::string text;
    for (const SceneSpan& scene : table.scenes)
        text += std::to_string(scene.start.frame) + " I -1\n"; // -1: the encoder chooses the quantizer
    return text;
}

} // namespace scenedetect
