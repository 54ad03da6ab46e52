#include "reading/readers/ReadAhead.h"

#include <algorithm>
#include <system_error>
#include <utility>

namespace scenedetect {
namespace {

constexpr std::size_t kTasks = 4;

} // namespace

ReadAhead::ReadAhead(ByteInput& input, ReadBufferPool& pool)
    : m_input(input), m_pool(pool), m_end(input.Size()), m_next(input.Position()) {
    try {
        m_thread = std::thread([this] { Work(); });
    } catch (const std::system_error&) {
        // Then all is read by who wants it.
    }
}

ReadAhead::~ReadAhead() {
    {
        const std::lock_guard lock(m_mutex);
        m_isEnding = true;
    }
    m_changed.notify_all();
    if (m_thread.joinable())
        m_thread.join();
}

// With the lock held: the next piece, or none when there are enough or all.
ReadAhead::Task* ReadAhead::Begin() {
    if (m_tasks.size() == kTasks || m_next >= m_end)
        return nullptr;
    std::int64_t wanted = ReadBuffer::kReadBytes;
    wanted -= (m_next + wanted - m_frameOffset) % m_frameBytes;
    wanted = std::min(wanted, m_end - m_next);
    Task& task =
        m_tasks.emplace_back(Task{m_pool.Take(), m_next, static_cast<std::size_t>(wanted), 0, false, {}});
    m_next += wanted;
    return &task;
}

void ReadAhead::Finish(Task& task, std::unique_lock<std::mutex>& lock) {
    lock.unlock();
    try {
        task.bytes = m_input.ReadAt(
            {task.buffer->bytes + ReadBuffer::kBackBytes + ReadBuffer::kHeadBytes, task.wanted}, task.offset);
    } catch (...) {
        task.error = std::current_exception();
    }
    lock.lock();
    task.isDone = true;
    m_changed.notify_all();
}

void ReadAhead::Work() {
    std::unique_lock lock(m_mutex);
    while (!m_isEnding) {
        Task* task = nullptr;
        try {
            task = Begin();
        } catch (const std::bad_alloc&) {
            return; // the other thread will tell
        }
        if (task)
            Finish(*task, lock);
        else
            m_changed.wait(lock);
    }
}

ReadAhead::Piece ReadAhead::Next(std::int64_t frameOffset, std::size_t frameBytes) {
    std::unique_lock lock(m_mutex);
    m_frameOffset = frameOffset;
    m_frameBytes = static_cast<std::int64_t>(frameBytes);
    while (m_tasks.empty() || !m_tasks.front().isDone) {
        if (Task* const task = Begin())
            Finish(*task, lock);
        else if (m_tasks.empty())
            return {};
        else
            m_changed.wait(lock);
    }
    Task task = std::move(m_tasks.front());
    m_tasks.pop_front();
    // Waking the other thread costs more than a piece: it gets some at once.
    if (m_tasks.size() <= kTasks / 2)
        m_changed.notify_all();
    if (task.error)
        std::rethrow_exception(task.error);
    return {std::move(task.buffer), task.bytes, task.bytes < task.wanted};
}

} // namespace scenedetect
