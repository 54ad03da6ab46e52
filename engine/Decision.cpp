// The rule of the scene-change engine: two numbers per frame in, a scene's first frame out.
#include "engine/Detector.h"
#include "support/DebugLog.h"
#include "support/Timecode.h"

#include <algorithm>
#include <cwchar>
#include <string>

namespace scenedetect {
namespace {

constexpr std::int32_t kNoCut = -1;

} // namespace

std::atomic<std::int32_t> g_maxSceneLength{0};

std::int32_t Detector::Decide(std::int32_t diff, std::int32_t level) {
    std::shift_left(diffHistory.begin(), diffHistory.end(), 1);
    diffHistory.back() = diff;
    std::shift_left(levelHistory.begin(), levelHistory.end(), 1);
    levelHistory.back() = level;

    // Deliberate: whatever the pictures, the third frame reports the scene that begins with the first.
    if (frameCount == 2)
        return 0;
    if (frameCount < std::int64_t{startFrame} + 4)
        return kNoCut;

    // In 64 bits: parameters and counts may be anything.
    const std::int64_t threshold = cutThreshold;
    const std::int64_t dark = darkLevel;
    const auto candidate = static_cast<std::int32_t>(std::int64_t{frameCount} - 2);
    const auto& [d0, d1, d2, d3, d4] = diffHistory;
    const auto& [m0, m1, m2, m3, m4] = levelHistory;

    // A repeated frame between two moving ones.
    const bool filled = d3 == 0 && d2 > threshold / 2 && d4 > threshold / 2;
    if (filled)
        diffHistory[3] = static_cast<std::int32_t>((std::int64_t{d4} + d2) / 2);

    const auto exceeds = [&, peak = std::int64_t{d2}](std::int64_t other) {
        return peak - other > threshold;
    };
    const int votes = exceeds(d0) + exceeds(d1) + exceeds(d3) + exceeds(d4);
    std::int32_t result = votes >= minVotes ? candidate : kNoCut;

    bool isDark = false;
    if (darkLock) {
        if (level > 3 * dark / 2)
            darkLock = false;
    } else if (m2 <= dark && m2 <= m1 && m2 <= m3 && std::int64_t{d3} - d2 <= threshold) {
        isDark = true;
        result = candidate;
    }
    if (result >= 0)
        darkLock = true;

    // Deliberate: a cut at frame 0 suppresses none at frame 1, and a suppressed cut leaves the lock set.
    if (lastCut != 0 && std::int64_t{lastCut} + 1 == result)
        result = kNoCut;
    const std::int32_t maxLength = g_maxSceneLength.load(std::memory_order_relaxed);
    if (result >= 0) {
        lastCut = result;
    } else if (maxLength > 0 && std::int64_t{candidate} - lastCut >= maxLength) {
        result = candidate;
        if (candidate >= 0)
            lastCut = candidate;
    }

    if (IsDebugLevelActive(kLogCategorySceneDetect, kLogLevelTrace))
        Trace(candidate, filled, result >= 0, isDark);
    return result;
}

void Detector::Trace(std::int32_t frame, bool filled, bool cut, bool dark) const {
    std::wstring timecode;
    FramesToTimecodeText(timecode, frame, false, std::max(frameRate, 1));
    wchar_t line[100];
    const wchar_t cutMark = filled ? L'#' : cut ? L'*' : L' ';
    std::swprintf(line, std::size(line), L"[%3d] %ls %5d%lc %3d%lc", frame, timecode.c_str(), diffHistory[2],
                  static_cast<wint_t>(cutMark), levelHistory[2], static_cast<wint_t>(dark ? L'*' : L' '));
    DebugPrintAt(kLogCategorySceneDetect, kLogLevelTrace, L"%s\n", line);
}

} // namespace scenedetect
