#include "scenes/rule/FigureRule.h"

#include <utility>

namespace scenedetect {

FigureRule::FigureRule(const DetectionParameters& parameters, const TransitionChoice& choice) {
    m_decision.SetParameters(parameters);
    if (!choice.IsEmpty())
        m_transitions.emplace(choice);
}

Judgement FigureRule::Add(std::int32_t difference, std::int32_t level, const Distances& distances) {
    const std::int64_t now = m_rows++;
    const Judgement judgement = m_decision.Judge(difference, level);
    if (now == 0)
        m_next = RuledScene{0, SceneKind::Cut};
    const std::int64_t judged = now - 2;
    const bool isScene = judgement.sceneStart >= 1;
    if (!m_transitions) {
        if (isScene)
            m_next = RuledScene{judged, judgement.isLongest ? SceneKind::Longest : SceneKind::Cut};
        return judgement;
    }
    // All but the last two, which no run judges.
    if (judged >= 0) {
        FrameMeasures& measures = m_latest[static_cast<std::size_t>(judged % 3)];
        measures.isCut = isScene;
        m_isLongest[static_cast<std::size_t>(judged % MeasureRing::kFrames)] = judgement.isLongest;
        m_transitions->Add(measures);
    }
    m_latest[static_cast<std::size_t>(now % 3)] = {difference, level, distances, false};
    return judgement;
}

void FigureRule::Finish() {
    if (m_transitions)
        m_transitions->Finish();
}

std::optional<RuledScene> FigureRule::Take() {
    if (m_next)
        return std::exchange(m_next, std::nullopt);
    if (!m_transitions)
        return std::nullopt;
    const auto transition = m_transitions->Take();
    if (!transition)
        return std::nullopt;
    const std::int64_t row = transition->frame;
    const bool isLongest = transition->kind == SceneKind::Cut &&
                           m_isLongest[static_cast<std::size_t>(row % MeasureRing::kFrames)];
    return RuledScene{row, isLongest ? SceneKind::Longest : transition->kind};
}

} // namespace scenedetect
