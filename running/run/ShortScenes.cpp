#include "running/run/ShortScenes.h"

namespace scenedetect {

ShortScenes::ShortScenes(SceneLength length, const TimeScale& scale, Take take, Leave leave)
    : m_length(std::move(length)), m_scale(scale), m_take(std::move(take)), m_leave(std::move(leave)) {
    // Now rather than at the first scene.
    if (m_length.least)
        (void)Resolve(*m_length.least, m_scale);
}

void ShortScenes::Add(const FoundScene& scene) {
    ++m_added;
    const bool takesFirst = m_length.rule != ShortRule::Drop && m_count == 0;
    if (!m_length.least || takesFirst)
        return TakeScene(scene);
    const FilePlace& place = scene.place;
    Settle(place);
    if ((m_count != 0 && m_begin.frame == place.frame) ||
        (m_candidate && m_candidate->place.frame == place.frame))
        return;
    if (const auto before = std::exchange(m_candidate, std::nullopt)) {
        if (m_length.rule == ShortRule::MergeLast)
            TakeScene(*before);
        else if (m_length.rule == ShortRule::Drop)
            Drop(*before, place);
    }
    if (m_length.rule == ShortRule::Merge && !m_longFrom.IsReachedBy(place))
        return;
    m_candidate = scene;
    m_candidateLongFrom = Resolve(*m_length.least, m_scale, place);
}

void ShortScenes::Settle(const FilePlace& place) {
    if (m_candidate && m_candidateLongFrom.IsReachedBy(place))
        TakeScene(*std::exchange(m_candidate, std::nullopt));
}

void ShortScenes::Finish(const FilePlace& end) {
    Settle(end);
    if (const auto last = std::exchange(m_candidate, std::nullopt); last && m_length.rule == ShortRule::Drop)
        Drop(*last, end);
}

void ShortScenes::TakeScene(FoundScene scene) {
    m_begin = scene.place;
    m_isInScene = true;
    if (m_length.least)
        m_longFrom = Resolve(*m_length.least, m_scale, m_begin);
    scene.number = ++m_count;
    m_take(scene);
}

void ShortScenes::Drop(const FoundScene& scene, const FilePlace& end) {
    m_droppedFrames += end.frame - scene.place.frame;
    if (std::exchange(m_isInScene, false))
        m_leave(scene.sample, scene.place);
}

} // namespace scenedetect
