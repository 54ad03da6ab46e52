#include "running/run/ShortScenes.h"

#include <utility>

namespace scenedetect {

void ShortScenes::Add(const FoundScene& scene) {
    ++m_added;
    if (m_shortest == 0 || m_count == 0)
        return Take(scene);
    const std::int64_t begin = scene.place.frame;
    Settle(begin);
    // Of two at one place the first counts.
    if (m_candidate && m_candidate->place.frame == begin)
        return;
    m_candidate.reset();
    if (begin - m_begin >= m_shortest)
        m_candidate = scene;
}

void ShortScenes::Settle(std::int64_t frame) {
    if (m_candidate && frame - m_candidate->place.frame >= m_shortest)
        Take(*std::exchange(m_candidate, std::nullopt));
}

void ShortScenes::Take(FoundScene scene) {
    m_begin = scene.place.frame;
    scene.number = ++m_count;
    m_take(scene);
}

} // namespace scenedetect
