#include "running/listeners/RecordingTimes.h"

#include "reading/dv/PackText.h"

#include <algorithm>
#include <utility>

namespace scenedetect {

void RecordingTimes::Note(const Picture& picture) {
    const DvFrameInfo* info = picture.Dv();
    if (!info)
        return;
    if (const auto verdict = m_judge.Note(picture.place.frame, *info))
        Settle(*m_pending, verdict->isTimeStray);
    const DvPacks& packs = info->packs;
    m_pending = {picture.place,
                 packs.date && packs.time ? TextOf(*packs.date) + ' ' + TextOf(*packs.time) : ""};
}

void RecordingTimes::Settle(const Frame& frame, bool isStray) {
    if (frame.text.empty())
        return;
    const FilePlace end = PlaceAfter(frame.place, m_scale);
    if (!m_spans.empty()) {
        RecordedSpan& last = m_spans.back();
        if (last.end.frame == frame.place.frame && (isStray || last.text == frame.text)) {
            last.end = end;
            return;
        }
        // Where line systems are mixed, frames may be shorter than the file's rate has it.
        last.end.time = std::min(last.end.time, frame.place.time);
    }
    if (!isStray)
        m_spans.push_back({frame.place, end, frame.text});
}

std::vector<RecordedSpan> RecordingTimes::Finish() {
    if (const auto verdict = m_judge.Finish())
        Settle(*m_pending, verdict->isTimeStray);
    return std::exchange(m_spans, {});
}

} // namespace scenedetect
