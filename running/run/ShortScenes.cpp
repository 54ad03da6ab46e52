#include "running/run/ShortScenes.h"

#include <utility>

namespace scenedetect {
namespace {

FrameAndTime PlaceOf(const FilePlace& place) {
    return {place.frame, place.time};
}

} // namespace

void ShortScenes::Add(const FoundScene& scene) {
    ++m_added;
    const auto [waiting, added] = m_rule.Add(PlaceOf(scene.place));
    Settle(waiting, scene.place);
    if (added == LengthRule::Fate::Stays)
        TakeScene(scene);
    else if (added == LengthRule::Fate::Waits)
        m_waiting = scene;
}

void ShortScenes::Settle(const FilePlace& place) {
    Settle(m_rule.Settle(PlaceOf(place)), place);
}

void ShortScenes::Finish(const FilePlace& end) {
    Settle(m_rule.Finish(PlaceOf(end)), end);
}

void ShortScenes::Settle(LengthRule::Fate waiting, const FilePlace& end) {
    if (waiting == LengthRule::Fate::Stays)
        TakeScene(m_waiting);
    else if (waiting == LengthRule::Fate::Dropped)
        Drop(m_waiting, end);
}

void ShortScenes::TakeScene(FoundScene scene) {
    m_isInScene = true;
    scene.number = ++m_count;
    m_take(scene);
}

void ShortScenes::Drop(const FoundScene& scene, const FilePlace& end) {
    m_droppedFrames += end.frame - scene.place.frame;
    if (std::exchange(m_isInScene, false))
        m_leave(scene.sample, scene.place);
}

} // namespace scenedetect
