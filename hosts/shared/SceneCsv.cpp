#include "hosts/shared/SceneCsv.h"

#include "hosts/shared/StandardStreams.h"

#include <utility>

namespace scenedetect {

SceneCsv::SceneCsv(const TimeScale& scale) : m_scale(scale) {}

void SceneCsv::Add(const FilePlace& place) {
    m_pending += std::to_string(++m_count) + ',' + std::to_string(place.frame) + ',' +
                 TimecodeText(place.time, m_scale) + ',' + SecondsText(place.time, m_scale) + '\n';
}

void SceneCsv::Flush() {
    WriteOutput(std::exchange(m_pending, {}));
}

} // namespace scenedetect
