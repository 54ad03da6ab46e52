#include "products/outputs/MergeScenes.h"

namespace scenedetect {

std::vector<SceneSpan> MergeShortScenes(const std::vector<SceneSpan>& scenes, std::int64_t minFrames) {
    std::vector<SceneSpan> merged;
    for (const SceneSpan& scene : scenes) {
        if (!merged.empty() && (scene.FrameCount() < minFrames || merged.back().FrameCount() < minFrames))
            merged.back().end = scene.end;
        else
            merged.push_back(scene);
    }
    return merged;
}

} // namespace scenedetect
