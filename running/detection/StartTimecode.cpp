#include "running/detection/StartTimecode.h"

#include "filter/Dvutil.h"
#include "reading/dv/DvCheck.h"
#include "reading/dv/PackText.h"
#include "reading/timing/FrameNumbering.h"

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
    m_onTape = TextOf(DvTimecode{hours, minutes, seconds, frames, m_is525});
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
    return "start timecode " + NumberTimecode(start, m_is525 ? FrameNumbering{30, 2} : FrameNumbering{25, 0});
}

} // namespace scenedetect
