#include "hosts/kxscenes/SceneCsv.h"

#include "hosts/kxscenes/HostError.h"

#include <cerrno>
#include <system_error>
#include <unistd.h>

namespace scenedetect {

SceneCsv::SceneCsv(int descriptor, const TimeScale& scale) : m_descriptor(descriptor), m_scale(scale) {}

void SceneCsv::Add(const FilePlace& place) {
    m_pending += std::to_string(++m_count) + ',' + std::to_string(place.frame) + ',' +
                 TimecodeText(place.time, m_scale) + ',' + SecondsText(place.time, m_scale) + '\n';
}

void SceneCsv::Flush() {
    std::size_t done = 0;
    while (done < m_pending.size()) {
        const ssize_t written = write(m_descriptor, m_pending.data() + done, m_pending.size() - done);
        if (written < 0 && errno == EINTR)
            continue;
        if (written < 0) {
            const std::string reason = std::generic_category().message(errno);
            m_pending.clear();
            throw HostError("standard output: cannot be written: " + reason);
        }
        done += static_cast<std::size_t>(written);
    }
    m_pending.clear();
}

} // namespace scenedetect
