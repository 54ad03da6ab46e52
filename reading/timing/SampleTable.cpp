#include "reading/timing/SampleTable.h"

#include <algorithm>

namespace scenedetect {

FilePlace PlaceAfter(const FilePlace& last, const TimeScale& scale) {
    return {last.frame + 1, last.time + Rescale(1, scale.rate.Inverse(), scale.unit), -1, kNoStamp};
}

FilePlace SampleTable::Run::At(std::int64_t index) const {
    return {first.frame + index * step.frame, first.time + index * step.time,
            first.byteOffset + index * step.byteOffset, first.stamp + index * step.stamp};
}

void SampleTable::Append(const FilePlace& place) {
    const std::lock_guard lock(m_mutex);
    const std::int64_t sample = m_sampleCount++;
    if (m_runs.size() > m_firstLive) {
        Run& last = m_runs.back();
        if (last.count == 1)
            last.step = {place.frame - last.first.frame, place.time - last.first.time,
                         place.byteOffset - last.first.byteOffset, place.stamp - last.first.stamp};
        if (last.At(last.count) == place) {
            ++last.count;
            return;
        }
    }
    m_runs.push_back({sample, 1, place, {}});
}

std::optional<FilePlace> SampleTable::Find(std::int64_t sample) const {
    const std::lock_guard lock(m_mutex);
    const auto live = m_runs.begin() + static_cast<std::ptrdiff_t>(m_firstLive);
    auto run = std::upper_bound(live, m_runs.end(), sample,
                                [](std::int64_t value, const Run& each) { return value < each.firstSample; });
    if (run == live)
        return std::nullopt;
    --run;
    if (sample >= run->End())
        return std::nullopt;
    return run->At(sample - run->firstSample);
}

void SampleTable::ForgetBefore(std::int64_t sample) {
    const std::lock_guard lock(m_mutex);
    while (m_firstLive < m_runs.size() && m_runs[m_firstLive].End() <= sample)
        ++m_firstLive;
    // Moved together rarely, so that forgetting one run after another stays cheap.
    if (m_firstLive > m_runs.size() / 2) {
        m_runs.erase(m_runs.begin(), m_runs.begin() + static_cast<std::ptrdiff_t>(m_firstLive));
        m_firstLive = 0;
    }
}

std::int64_t SampleTable::SampleCount() const {
    const std::lock_guard lock(m_mutex);
    return m_sampleCount;
}

std::size_t SampleTable::RunCount() const {
    const std::lock_guard lock(m_mutex);
    return m_runs.size() - m_firstLive;
}

} // namespace scenedetect
