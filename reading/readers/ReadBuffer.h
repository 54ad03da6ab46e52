// Buffers that files are read into, used again and again.
#pragma once

#include "reading/dv/DvFrame.h"
#include "reading/readers/Picture.h"

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

namespace scenedetect {

/// Lives as long as anybody holds it, on whatever thread.
struct ReadBuffer {
    /// Four frames of 625 lines: few calls, and still a size that stays in a processor's cache.
    static constexpr std::size_t kReadBytes = 4 * kDifFrameBytes625;
    /// In front of what is read: the piece of a frame that it continues, and bytes that were dropped already.
    static constexpr std::size_t kHeadBytes = 2 * kDifFrameBytes625;
    static constexpr std::size_t kBackBytes = 128;
    static constexpr std::size_t kBytes = kBackBytes + kHeadBytes + kReadBytes;

    struct Release {
        void operator()(ReadBuffer* buffer) const;
    };
    using Holder = std::unique_ptr<ReadBuffer, Release>;

    /// One more holder of a buffer that is held.
    [[nodiscard]] Holder Hold();

    std::atomic<int> holders = 0;
    alignas(64) std::uint8_t bytes[kBytes];
};

/// One thread at a time.
class ReadBufferPool {
  public:
    /// A buffer that nobody else holds; the pool grows when there is none. std::bad_alloc.
    [[nodiscard]] ReadBuffer::Holder Take();

  private:
    std::vector<ReadBuffer::Holder> m_buffers;
};

} // namespace scenedetect
