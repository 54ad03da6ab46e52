#include "scenes/transitions/TransitionRule.h"

#include "scenes/transitions/Flashes.h"

#include <algorithm>

namespace scenedetect {
namespace {

// A fade that settles a dissolve is found so many frames after its first.
constexpr std::int64_t kFadeDelay = 2 * FadeFinder::kReach;

} // namespace

void TransitionRule::Add(const FrameMeasures& measures) {
    m_frames.Add(measures);
    VerdictOf(m_frames.End() - 1) = {};
    Note(m_frames.End() - 1);
}

void TransitionRule::Finish() {
    const std::int64_t end = m_frames.End();
    for (std::int64_t now = end; now < end + MeasureRing::kFrames / 2; ++now)
        Note(now);
    m_settled = end;
}

void TransitionRule::Note(std::int64_t now) {
    m_settled = now + 1;
    if (m_choice.dropsFlashes) {
        if (const std::int64_t cut = now - kFlashLookAhead; m_frames.Has(cut) && IsFlashEdge(m_frames, cut))
            VerdictOf(cut).isDropped = true;
        m_settled -= kFlashLookAhead;
    }
    if (!m_choice.FindsFades() && !m_choice.findsDissolves)
        return;
    // Also those that are no scenes here: what goes on in a fade is no dissolve.
    if (const auto fade = m_fades.Note(m_frames, now))
        Enter(*fade);
    m_settled = std::min(m_settled, m_fades.SettledBefore(now) - kFadeDelay);
    if (!m_choice.findsDissolves)
        return;
    if (const auto middle = m_dissolves.Note(m_frames, now);
        middle && !(*middle >= m_rampFrom && *middle <= m_rampTo))
        VerdictOf(*middle).isDissolve = true;
    m_settled = std::min(m_settled, m_dissolves.SettledBefore(now));
}

void TransitionRule::Enter(const Fade& fade) {
    m_rampFrom = fade.rampFrom;
    m_rampTo = fade.rampTo;
    for (std::int64_t frame = fade.rampFrom; frame <= fade.rampTo; ++frame)
        if (m_frames.Has(frame))
            VerdictOf(frame).isDissolve = false;
    if (!m_choice.FindsFades() || !fade.isScene)
        return;
    const std::int64_t lastCut = fade.hasAfter ? std::max(fade.darkTo, fade.last + 1) : fade.darkTo;
    for (std::int64_t frame = fade.darkFrom; frame <= lastCut; ++frame)
        if (m_frames.Has(frame))
            VerdictOf(frame).isDropped = true;
    VerdictOf(PlaceOf(fade)).isFade = true;
}

std::int64_t TransitionRule::PlaceOf(const Fade& fade) const {
    if (!fade.hasAfter || (fade.hasBefore && m_choice.fades == FadePlace::Start))
        return fade.first;
    if (!fade.hasBefore || m_choice.fades == FadePlace::End)
        return fade.last + 1;
    return (fade.first + fade.last) / 2;
}

std::optional<Transition> TransitionRule::Take() {
    while (m_taken < m_settled) {
        const std::int64_t frame = m_taken++;
        const auto [isDropped, isFade, isDissolve] = VerdictOf(frame);
        if (isFade)
            return Transition{SceneKind::Fade, frame};
        if (isDissolve)
            return Transition{SceneKind::Dissolve, frame};
        if (m_frames.At(frame).isCut && !isDropped)
            return Transition{SceneKind::Cut, frame};
    }
    return std::nullopt;
}

} // namespace scenedetect
