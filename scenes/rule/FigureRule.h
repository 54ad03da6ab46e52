// The scenes that the picture comparison finds in a run's figures, and what effects make of them.
#pragma once

#include "engine/decision/Decision.h"
#include "scenes/transitions/TransitionRule.h"

#include <array>
#include <cstdint>
#include <optional>

namespace scenedetect {

struct RuledScene {
    std::int64_t row;
    SceneKind kind;
    bool isOther = false; ///< found by something else, too
};

/// Judges row after row as a run does, and tells its scenes, the first of which begins with the first row.
/// Needs no memory but its own, throws nothing. One thread.
class FigureRule {
  public:
    FigureRule(const DetectionParameters& parameters, const TransitionChoice& choice);

    /// The next row's figures; distances where there is a choice. What is made of it, as Decision::Judge.
    Judgement Add(std::int32_t difference, std::int32_t level, const Distances& distances);
    /// After the last.
    void Finish();
    /// The next scene, in order, once it is settled; to be asked after each row until there is none.
    [[nodiscard]] std::optional<RuledScene> Take();
    [[nodiscard]] const Decision& State() const { return m_decision; }

  private:
    Decision m_decision;
    std::optional<TransitionRule> m_transitions;
    std::array<FrameMeasures, 3> m_latest{}; // by row
    std::array<bool, MeasureRing::kFrames> m_isLongest{};
    std::optional<RuledScene> m_next; // but for those of the transitions
    std::int64_t m_rows = 0;
};

} // namespace scenedetect
