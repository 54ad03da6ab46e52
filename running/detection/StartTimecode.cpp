#include "running/detection/StartTimecode.h"

#include "filter/Dvutil.h"
#include "platform/Text.h"
#include "reading/dv/DvCheck.h"
#include "support/Timecode.h"

#include <cstdio>

namespace scenedetect {

void StartTimecode::Note(const Picture& first) {
    const auto system = IdentifyDvFrame(first.Bytes());
    if (!system || first.format.fourcc != kDvFourcc)
        return;
    m_is525 = *system == DvSystem::Lines525;

    constexpr int kUnread = -1;
    int hours = kUnread;
    int minutes = 0;
    int seconds = 0;
    int frames = 0;
    const bool isUsable = Dvutil().GetTimeCode(first.Bytes(), hours, minutes, seconds, frames);
    m_first = isUsable           ? FirstFrame::Usable
              : hours != kUnread ? FirstFrame::BeyondReach
                                 : FirstFrame::Without;
    char text[64];
    std::snprintf(text, sizeof text, "%02d:%02d:%02d%c%02d", hours, minutes, seconds, m_is525 ? ';' : ':',
                  frames);
    m_onTape = text;
}

std::string StartTimecode::Text(IKxSceneDetect& scenes) const {
    if (m_first == FirstFrame::NotDv)
        return "no DV timecode: the video is not DV";
    ULONG start = 0;
    scenes.GetStartTimecode(&start);
    if (start == 0 && m_first == FirstFrame::Without)
        return "no timecode in the DV frames";
    if (start == 0 && m_first == FirstFrame::BeyondReach)
        return "no start timecode: the tape's starts at " + m_onTape +
               ", and the filter makes none of four hours or more";
    std::wstring text;
    FramesToTimecodeText(text, static_cast<std::int32_t>(start), true, m_is525 ? 30 : 25);
    if (m_is525)
        text[text.rfind(L':')] = L';';
    return "start timecode " + Utf8FromWide(text);
}

} // namespace scenedetect
