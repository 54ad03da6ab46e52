#include "scenes/FrameFigures.h"

#include <algorithm>

namespace scenedetect {

static_assert(std::ranges::equal(kDistanceSpans, KxDistanceSpans));

void NoteJudgement(const Judgement& judgement, KxFrameFigures& current, KxFrameFigures* before,
                   KxFrameFigures* twoBefore) {
    current.nDifference = judgement.difference;
    current.nLevel = judgement.level;
    current.nFilled = judgement.difference;
    current.dwFlags = 0;
    if (before && judgement.filled) {
        before->nFilled = *judgement.filled;
        before->dwFlags |= KxFrameFilled;
    }
    if (twoBefore && judgement.isDark)
        twoBefore->dwFlags |= KxFrameDark;
    if (twoBefore && judgement.sceneStart >= 0)
        twoBefore->dwFlags |= KxFrameCut;
}

void FiguresQueue::Close() {
    Begin();
    m_ring = {};
}

void FiguresQueue::Begin() {
    m_begin = m_end = 0;
    m_notFinal = kLookAhead;
}

KxFrameFigures* FiguresQueue::Before(std::size_t frames) {
    return m_end - m_begin > frames ? &At(m_end - 1 - frames) : nullptr;
}

void FiguresQueue::Add(std::int32_t position, const Judgement& judgement, const Distances* distances) {
    if (m_end - m_begin == kCapacity)
        ++m_begin;
    if (!m_distances.empty()) {
        KxFrameDistances& kept = m_distances[m_end % kCapacity] = kWithoutDistances;
        if (distances) {
            std::ranges::copy(distances->back, kept.nDistance);
            kept.nVariance = distances->variance;
            kept.nDetail = distances->detail;
        }
    }
    KxFrameFigures& current = At(m_end++);
    current.dwPosition = static_cast<ULONG>(position);
    NoteJudgement(judgement, current, Before(1), Before(2));
}

std::size_t FiguresQueue::Take(std::span<KxFrameFigures> target, KxFrameDistances* distances) {
    const std::uint64_t final = m_end - std::min<std::uint64_t>(m_end, m_notFinal);
    const std::size_t count =
        final > m_begin ? static_cast<std::size_t>(std::min<std::uint64_t>(final - m_begin, target.size()))
                        : 0;
    for (KxFrameFigures& figures : target.first(count)) {
        if (distances)
            *distances++ = m_distances.empty() ? kWithoutDistances : m_distances[m_begin % kCapacity];
        figures = At(m_begin++);
    }
    return count;
}

} // namespace scenedetect
