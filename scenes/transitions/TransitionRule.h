// The scenes of a run, of what the picture comparison finds and what flashes, fades and dissolves make of it.
#pragma once

#include "scenes/transitions/DissolveFinder.h"
#include "scenes/transitions/FadeFinder.h"
#include "scenes/transitions/TransitionChoice.h"

#include <array>
#include <cstdint>
#include <optional>

namespace scenedetect {

/// How a scene begins.
enum class SceneKind : std::uint8_t {
    Cut,
    Fade,
    Dissolve,
    Longest,     ///< the one before is as long as it may be
    Other = 255, ///< found by something else than pictures
};

struct Transition {
    SceneKind kind;     ///< one of the first three
    std::int64_t frame; ///< that the scene begins with
};

/// Plain code: needs no memory but its own, throws nothing. One thread.
class TransitionRule {
  public:
    explicit TransitionRule(const TransitionChoice& choice) : m_choice(choice) {}

    /// The next frame's, from 0; with distances.
    void Add(const FrameMeasures& measures);
    /// After the last.
    void Finish();
    /// The next scene, in order, once it is settled.
    [[nodiscard]] std::optional<Transition> Take();
    /// All scenes before this frame are settled.
    [[nodiscard]] std::int64_t SettledBefore() const { return m_settled; }

  private:
    // What is found out about a frame.
    struct Verdict {
        bool isDropped = false; ///< its cut
        bool isFade = false;
        bool isDissolve = false;
    };

    Verdict& VerdictOf(std::int64_t frame) {
        return m_verdicts[static_cast<std::size_t>(frame % MeasureRing::kFrames)];
    }
    void Note(std::int64_t now);
    void Enter(const Fade& fade);
    /// Where its scene begins.
    [[nodiscard]] std::int64_t PlaceOf(const Fade& fade) const;

    const TransitionChoice m_choice;
    MeasureRing m_frames;
    FadeFinder m_fades;
    DissolveFinder m_dissolves;
    std::array<Verdict, MeasureRing::kFrames> m_verdicts{};
    std::int64_t m_rampFrom = 0; // of the last fade
    std::int64_t m_rampTo = -1;
    std::int64_t m_settled = 0;
    std::int64_t m_taken = 0;
};

} // namespace scenedetect
