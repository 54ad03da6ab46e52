// The scenes of the picture comparison as flashes, fades and dissolves make them.
#pragma once

#include "scenes/IKxSceneDetect.h"
#include "scenes/transitions/TransitionRule.h"

#include <cstdint>
#include <functional>
#include <optional>
#include <set>

namespace scenedetect {

/// Takes what a filter finds by "video" with the figures of each frame, and hands out the scenes of the run
/// in place of it; marks stay. One thread.
class TransitionScenes {
  public:
    using Found = std::function<void(SceneKind kind, std::int64_t sample)>;

    /// `found` gets a scene once it is known; not in order.
    TransitionScenes(const TransitionChoice& choice, Found found);

    [[nodiscard]] bool IsOn() const { return m_rule.has_value(); }
    /// A scene that the filter reports, before the figures of its frame.
    void Add(std::int64_t sample);
    /// The next frame's; distances that the choice needs.
    void Note(const KxFrameFigures& figures, const KxFrameDistances& distances);
    /// What is noted from now on, of the frames that no filter judges, changes nothing.
    void Finish();
    /// No scene before this sample is handed out any more, if none is added there.
    [[nodiscard]] std::int64_t SettledBefore() const;
    /// Whether scenes are others than the filter's.
    [[nodiscard]] bool HasChanged() const { return m_hasChanged; }

  private:
    void TakeAll();

    const Found m_found;
    std::optional<TransitionRule> m_rule;
    std::multiset<std::int64_t> m_added; // that no figures came for yet
    std::set<std::int64_t> m_cuts;       // that the rule has not kept yet
    bool m_isOver = false;
    bool m_hasChanged = false;
};

} // namespace scenedetect
