#include "running/run/TapeScenes.h"

namespace scenedetect {

void TapeScenes::Note(const Picture& picture, std::int64_t sample) {
    if (m_cuts.empty())
        return;
    if (sample == 0)
        for (std::size_t i = 0; i < m_cuts.size(); ++i)
            m_found(i, 0);
    const DvFrameInfo* info = picture.Dv();
    if (!info)
        return;
    Tell(m_judge.Note(picture.place.frame, *info));
    m_sample = sample;
}

void TapeScenes::Finish() {
    Tell(m_judge.Finish());
}

void TapeScenes::Tell(const std::optional<TapeVerdict>& verdict) {
    for (std::size_t i = 0; verdict && i < m_cuts.size(); ++i)
        if (verdict->Begins(m_cuts[i]))
            m_found(i, m_sample);
}

} // namespace scenedetect
