#include "running/run/TransitionScenes.h"

#include <algorithm>
#include <limits>
#include <utility>

namespace scenedetect {

TransitionScenes::TransitionScenes(const TransitionChoice& choice, Found found) : m_found(std::move(found)) {
    if (!choice.IsEmpty())
        m_rule.emplace(choice);
}

void TransitionScenes::Add(std::int64_t sample) {
    if (m_rule && sample != 0)
        m_added.insert(sample);
    else
        m_found(SceneKind::Cut, sample);
}

// A scene that is no cut was marked.
void TransitionScenes::Note(const KxFrameFigures& figures, const KxFrameDistances& distances) {
    if (!m_rule || m_isOver)
        return;
    const std::int64_t sample = figures.dwPosition;
    FrameMeasures measures{figures.nDifference,
                           figures.nLevel,
                           {.variance = distances.nVariance, .detail = distances.nDetail},
                           sample != 0 && (figures.dwFlags & KxFrameCut) != 0};
    std::ranges::copy(distances.nDistance, measures.distances.back.begin());
    const auto [begin, end] = m_added.equal_range(sample);
    for (auto marks = std::distance(begin, end) - (measures.isCut ? 1 : 0); marks > 0; --marks)
        m_found(SceneKind::Cut, sample);
    m_added.erase(begin, end);
    if (measures.isCut)
        m_cuts.insert(sample);
    m_rule->Add(measures);
    TakeAll();
}

void TransitionScenes::Finish() {
    m_isOver = true;
    if (!m_rule)
        return;
    m_rule->Finish();
    TakeAll();
    for (const std::int64_t mark : std::exchange(m_added, {}))
        m_found(SceneKind::Cut, mark);
}

std::int64_t TransitionScenes::SettledBefore() const {
    // What changes between the first picture and the one before it is nothing.
    return m_rule ? std::max<std::int64_t>(m_rule->SettledBefore(), 1)
                  : std::numeric_limits<std::int64_t>::max();
}

void TransitionScenes::TakeAll() {
    while (const auto transition = m_rule->Take()) {
        m_found(transition->kind, transition->frame);
        if (transition->kind != SceneKind::Cut || m_cuts.erase(transition->frame) == 0)
            m_hasChanged = true;
    }
    // What lies before is dropped.
    while (!m_cuts.empty() && *m_cuts.begin() < m_rule->SettledBefore()) {
        m_cuts.erase(m_cuts.begin());
        m_hasChanged = true;
    }
}

} // namespace scenedetect
