#include "running/listeners/OrderedOutput.h"

#include "reading/base/HostError.h"
#include "reading/base/StandardStreams.h"

#include <utility>

namespace scenedetect {

void OrderedOutput::Write(std::string_view text) {
    if (m_isClosed || m_hasFailed)
        return;
    m_console.ClearProgress();
    try {
        WriteOutput(std::exchange(m_header, {}) + std::string(text));
    } catch (const OutputClosed&) {
        m_isClosed = true;
        if (m_isAll)
            throw;
    } catch (...) {
        m_hasFailed = true;
        throw;
    }
}

void OrderedOutput::Print(std::size_t run, std::string_view text) {
    const std::lock_guard lock(m_mutex);
    if (run == m_turn)
        Write(text);
    else
        m_kept[run].text += text;
}

void OrderedOutput::Close(std::size_t run) {
    const std::lock_guard lock(m_mutex);
    m_kept[run].isClosed = true;
    while (m_turn < m_kept.size() && m_kept[m_turn].isClosed) {
        ++m_turn;
        if (m_turn < m_kept.size() && !m_kept[m_turn].text.empty())
            Write(std::exchange(m_kept[m_turn].text, {}));
    }
}

void OrderedOutput::Abandon(std::size_t run) noexcept {
    try {
        Close(run);
    } catch (...) { // HasFailed tells
    }
}

} // namespace scenedetect
