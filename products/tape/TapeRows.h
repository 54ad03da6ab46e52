// Puts the rows of the tape log in order and merges those that belong together.
#pragma once

#include "products/tape/TapeRow.h"

#include <array>
#include <functional>
#include <optional>
#include <utility>
#include <vector>

namespace scenedetect {

/// A recording is the row that the others come after, but how long it is shows at its end only. So what
/// happens within it is kept until then: at most a few thousand rows, after which the recording is written
/// as far as it goes. One thread at a time.
class TapeRows {
  public:
    explicit TapeRows(std::function<void(const TapeRow&)> write) : m_write(std::move(write)) {}

    /// A recording begins with the row's frame, and the one before ends.
    void Begin(const TapeRow& row);
    /// `row` is about one frame or the like; it extends the row of the same event that ended shortly before,
    /// if there is one. Frames never go backward.
    void Add(const TapeRow& row);
    [[nodiscard]] bool IsFull() const;
    /// The last recording ends before the frame with the number `frames`; all that is left is written.
    void Finish(std::int64_t frames);

  private:
    // Whether a row of this event would be extended by `frame`.
    [[nodiscard]] bool IsRunning(TapeEvent event, std::int64_t frame) const;
    void EndRecording(std::int64_t frame);
    void WriteUntil(std::int64_t frame);

    const std::function<void(const TapeRow&)> m_write;
    std::optional<TapeRow> m_recording;
    std::array<std::optional<TapeRow>, kTapeEvents> m_running;
    std::vector<TapeRow> m_rows;
};

} // namespace scenedetect
