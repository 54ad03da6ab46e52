#include "engine/JudgementTrace.h"

#include "support/DebugLog.h"
#include "support/Timecode.h"

#include <algorithm>
#include <cwchar>
#include <string>

namespace scenedetect {

void TraceJudgement(const Decision& decision, const Judgement& judgement, std::int32_t framesPerSecond) {
    if (!judgement.isJudged || !IsDebugLevelActive(kLogCategorySceneDetect, kLogLevelTrace))
        return;
    const std::int32_t frame = decision.FrameCount() - 3;
    std::wstring timecode;
    FramesToTimecodeText(timecode, frame, false, std::max(framesPerSecond, 1));
    wchar_t line[100];
    const wchar_t cutMark = judgement.filled ? L'#' : judgement.sceneStart >= 0 ? L'*' : L' ';
    std::swprintf(line, std::size(line), L"[%3d] %ls %5d%lc %3d%lc", frame, timecode.c_str(),
                  decision.Differences()[2], static_cast<wint_t>(cutMark), decision.Levels()[2],
                  static_cast<wint_t>(judgement.isDark ? L'*' : L' '));
    DebugPrintAt(kLogCategorySceneDetect, kLogLevelTrace, L"%s\n", line);
}

} // namespace scenedetect
