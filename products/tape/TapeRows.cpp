#include "products/tape/TapeRows.h"

#include <algorithm>
#include <limits>
#include <tuple>

namespace scenedetect {

void TapeRows::Begin(const TapeRow& row) {
    EndRecording(row.frame);
    m_recording = row;
}

void TapeRows::Add(const TapeRow& row) {
    auto& running = m_running[static_cast<std::size_t>(row.event)];
    if (!IsRunning(row.event, row.frame)) {
        if (running)
            m_rows.push_back(*running);
        running = row;
        return;
    }
    // A frame can be told of twice: its own blocks, and what the reader finds of it later.
    running->frames += row.frame > running->lastFrame ? row.frames : 0;
    running->lastFrame = std::max(running->lastFrame, row.lastFrame);
    if (row.size)
        running->size = running->size.value_or(0) + *row.size;
    running->blocks += row.blocks;
}

bool TapeRows::IsRunning(TapeEvent event, std::int64_t frame) const {
    const auto& running = m_running[static_cast<std::size_t>(event)];
    if (!running)
        return false;
    const int second = DvTimecodeRate(running->system.value_or(DvSystem::Lines625));
    return frame - running->lastFrame <= (KindOf(event).isScattered ? second : 1);
}

bool TapeRows::IsFull() const {
    // A megabyte, and more than anyone reads of one recording.
    constexpr std::size_t kMostRows = 4000;
    return m_rows.size() >= kMostRows;
}

void TapeRows::Finish(std::int64_t frames) {
    EndRecording(frames);
    WriteUntil(std::numeric_limits<std::int64_t>::max());
}

void TapeRows::EndRecording(std::int64_t frame) {
    for (auto& running : m_running)
        if (running)
            m_rows.push_back(*std::exchange(running, std::nullopt));
    if (m_recording) {
        m_recording->lastFrame = frame - 1;
        m_recording->frames = frame - m_recording->frame;
        m_rows.push_back(*std::exchange(m_recording, std::nullopt));
    }
    std::ranges::stable_sort(
        m_rows, {}, [](const TapeRow& row) { return std::pair(row.frame, static_cast<int>(row.event)); });
    WriteUntil(frame);
}

void TapeRows::WriteUntil(std::int64_t frame) {
    const auto end = std::ranges::find_if(m_rows, [frame](const TapeRow& row) { return row.frame >= frame; });
    std::for_each(m_rows.begin(), end, m_write);
    m_rows.erase(m_rows.begin(), end);
}

} // namespace scenedetect
