#include "engine/decision/Decision.h"

#include <algorithm>
#include <limits>

namespace scenedetect {
namespace {

constexpr std::int32_t kNoCut = -1;

} // namespace

void Decision::Reset() {
    darkLock = false;
    lastCut = 0;
    frameCount = 0;
    startFrame = 0;
    diffHistory.fill(0);
    levelHistory.fill(0);
}

void Decision::SetStartFrame(std::int32_t frame) {
    if (frame == frameCount)
        return;
    frameCount = frame;
    startFrame = frame;
}

Judgement Decision::Judge(std::int32_t difference, std::int32_t level) {
    Judgement judgement{.difference = difference, .level = level};
    std::shift_left(diffHistory.begin(), diffHistory.end(), 1);
    diffHistory.back() = difference;
    std::shift_left(levelHistory.begin(), levelHistory.end(), 1);
    levelHistory.back() = level;

    // Deliberate: whatever the pictures, the third frame reports the scene that begins with the first.
    if (frameCount == 2)
        judgement.sceneStart = 0;
    else if (frameCount >= std::int64_t{startFrame} + 4)
        Decide(judgement);
    if (frameCount != std::numeric_limits<std::int32_t>::max())
        ++frameCount;
    return judgement;
}

void Decision::Decide(Judgement& judgement) {
    // In 64 bits: parameters and counts may be anything.
    const std::int64_t threshold = m_parameters.cutThreshold;
    const std::int64_t dark = m_parameters.darkLevel;
    const auto candidate = static_cast<std::int32_t>(std::int64_t{frameCount} - 2);
    const auto& [d0, d1, d2, d3, d4] = diffHistory;
    const auto& [m0, m1, m2, m3, m4] = levelHistory;

    // A repeated frame between two moving ones.
    if (d3 == 0 && d2 > threshold / 2 && d4 > threshold / 2) {
        judgement.filled = static_cast<std::int32_t>((std::int64_t{d4} + d2) / 2);
        diffHistory[3] = *judgement.filled;
    }

    const auto exceeds = [&, peak = std::int64_t{d2}](std::int64_t other) {
        return peak - other > threshold;
    };
    const std::array exceeded = {exceeds(d0), exceeds(d1), exceeds(d3), exceeds(d4)};
    int votes = 0;
    for (std::size_t i = 0; i < exceeded.size(); ++i) {
        votes += exceeded[i];
        judgement.exceeded |= static_cast<std::uint8_t>(exceeded[i] << i);
    }
    judgement.isJudged = true;
    judgement.isLocked = darkLock;
    std::int32_t& result = judgement.sceneStart;
    result = votes >= m_parameters.minVotes ? candidate : kNoCut;

    if (darkLock) {
        if (m4 > 3 * dark / 2)
            darkLock = false;
    } else if (m2 <= dark && m2 <= m1 && m2 <= m3 && std::int64_t{d3} - d2 <= threshold) {
        judgement.isDark = true;
        result = candidate;
    }
    if (result >= 0)
        darkLock = true;

    // Deliberate: a cut at frame 0 suppresses none at frame 1, and a suppressed cut leaves the lock set.
    judgement.isBeside = lastCut != 0 && std::int64_t{lastCut} + 1 == result;
    if (judgement.isBeside)
        result = kNoCut;
    const std::int32_t longest = m_parameters.LongestScene();
    if (result >= 0) {
        lastCut = result;
    } else if (longest > 0 && std::int64_t{candidate} - lastCut >= longest) {
        result = candidate;
        judgement.isLongest = true;
        if (candidate >= 0)
            lastCut = candidate;
    }
}

} // namespace scenedetect
