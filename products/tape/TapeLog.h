// The tape log: the recordings on a tape, and what is irregular about it, from its frames as they go by.
#pragma once

#include "products/tape/RecordingClock.h"
#include "products/tape/TapeFrame.h"
#include "products/tape/TapeLogText.h"
#include "products/tape/TapeRows.h"
#include "reading/readers/Irregularity.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace scenedetect {

/// Told of every DV frame that is handed out and of every irregularity, in the order in which the reader has
/// them; gives text to the sink whenever a recording has ended. What the sink throws comes out of Note or
/// Finish. One thread at a time.
class TapeLog {
  public:
    /// `source` is the input's name. The sink is not called before the first recording has ended, or Finish.
    TapeLog(TapeLogFormat format, std::string source, TapeLogText::Sink sink);

    void Note(const TapeFrame& frame);
    /// Of a gap before the frame after it is noted; of damaged blocks at any time.
    void Note(const Irregularity& irregularity);
    /// Once, after the last frame: writes what is left. Without it the log is not whole.
    void Finish();

  private:
    // A frame in the time of the tape.
    struct Frame : TapeFrame {
        std::int64_t position = 0; // ticks from the first frame
    };
    struct Count {
        std::int64_t timecode = 0; // frames
        std::int64_t dayFrames = 0;
        std::int64_t frame = 0;
        DvSystem system = DvSystem::Lines525;
    };
    // How a frame goes on from those before.
    struct Verdict {
        std::optional<std::int64_t> recordingBreak;
        std::optional<std::int64_t> timecodeJump;
        bool isClockGoingOn = false;
        bool isTimeStray = false;
        bool isTimecodeStray = false;
    };

    void Settle(const Frame& frame, const Frame* next);
    void JudgeClock(const Frame& frame, const Frame* next, Verdict& verdict);
    void JudgeTimecode(const Frame& frame, const Frame* next, Verdict& verdict);
    [[nodiscard]] bool BeginsRecording(const Frame& frame, const Verdict& verdict) const;
    void AddChanges(TapeRow row);
    void AddBlocks(const Frame& frame, TapeRow row);
    void SettleIrregularities();
    [[nodiscard]] static std::optional<Count> CountOf(const Frame& frame);
    [[nodiscard]] std::int64_t JumpAt(const Count& count) const;

    TapeLogText m_text;
    TapeRows m_rows;
    std::optional<Frame> m_pending; // the last that was noted: the next one tells whether its packs go astray
    std::optional<Frame> m_last;    // that was settled
    std::vector<Irregularity> m_irregularities; // after m_pending
    RecordingClock m_clock;
    std::optional<Count> m_count;
    std::optional<DvAspect> m_aspect;
};

} // namespace scenedetect
