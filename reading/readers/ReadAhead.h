// Reads a file from front to back with two threads.
#pragma once

#include "reading/readers/ByteInput.h"
#include "reading/readers/ReadBuffer.h"

#include <condition_variable>
#include <cstdint>
#include <deque>
#include <exception>
#include <mutex>
#include <thread>

namespace scenedetect {

/// A thread of its own reads the next pieces while the first one is worked on. Whoever wants a piece that is
/// not there yet reads the next one instead of waiting: copying from the system's cache takes a processor
/// longer than what is done with the bytes, and waking a thread longer than reading a piece. One thread at a
/// time.
class ReadAhead {
  public:
    struct Piece {
        ReadBuffer::Holder buffer; // null at the end of what the file had at the beginning
        std::size_t bytes = 0;     // at ReadBuffer::kBackBytes + kHeadBytes
        bool isLast = false;       // the file is shorter now: nothing follows
    };

    /// From the input's position on. `input`, which must have ReadAt, and `pool` are its own until its end,
    /// but for what moves the input's position.
    ReadAhead(ByteInput& input, ReadBufferPool& pool);
    ~ReadAhead();
    ReadAhead(const ReadAhead&) = delete;
    ReadAhead& operator=(const ReadAhead&) = delete;

    /// Pieces chosen from now on end where a frame does, if frames are `frameBytes` long and one begins at
    /// `frameOffset`. HostError when reading this piece failed, std::bad_alloc.
    [[nodiscard]] Piece Next(std::int64_t frameOffset, std::size_t frameBytes);

  private:
    struct Task {
        ReadBuffer::Holder buffer;
        std::int64_t offset;
        std::size_t wanted;
        std::size_t bytes = 0;
        bool isDone = false;
        std::exception_ptr error;
    };

    [[nodiscard]] Task* Begin();
    void Finish(Task& task, std::unique_lock<std::mutex>& lock);
    void Work();

    ByteInput& m_input;
    ReadBufferPool& m_pool;
    const std::int64_t m_end;
    std::mutex m_mutex;
    std::condition_variable m_changed;
    std::deque<Task> m_tasks; // begun, and not taken yet
    std::int64_t m_next;
    std::int64_t m_frameOffset = 0;
    std::int64_t m_frameBytes = 1;
    bool m_isEnding = false;
    std::thread m_thread;
};

} // namespace scenedetect
