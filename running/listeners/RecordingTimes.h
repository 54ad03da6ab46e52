// The date and time of recording over the whole of a tape.
#pragma once

#include "products/outputs/SceneTable.h"
#include "reading/dv/TapeJudge.h"
#include "reading/readers/Picture.h"

#include <optional>
#include <string>
#include <vector>

namespace scenedetect {

/// Frames without a date or a time have none; what a single frame says and neither neighbour bears out is
/// not believed. One thread.
class RecordingTimes {
  public:
    explicit RecordingTimes(const TimeScale& scale) : m_scale(scale) {}

    /// The next DV frame.
    void Note(const Picture& picture);
    /// After the last of them.
    [[nodiscard]] std::vector<RecordedSpan> Finish();

  private:
    struct Frame {
        FilePlace place;
        std::string text; // empty without a date or a time
    };

    void Settle(const Frame& frame, bool isStray);

    const TimeScale m_scale;
    TapeJudge m_judge;
    std::optional<Frame> m_pending; // until it is judged
    std::vector<RecordedSpan> m_spans;
};

} // namespace scenedetect
