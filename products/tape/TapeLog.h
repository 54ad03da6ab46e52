// The tape log: the recordings on a tape, and what is irregular about it, from its frames as they go by.
#pragma once

#include "products/tape/TapeFrame.h"
#include "products/tape/TapeLogText.h"
#include "products/tape/TapeRows.h"
#include "reading/dv/TapeJudge.h"
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
    void Settle(const TapeFrame& frame, const TapeVerdict& verdict);
    void AddChanges(const TapeVerdict& verdict, TapeRow row);
    void AddBlocks(const TapeFrame& frame, TapeRow row);
    void SettleIrregularities();

    TapeLogText m_text;
    TapeRows m_rows;
    TapeJudge m_judge;
    std::optional<TapeFrame> m_pending;         // the last that was noted
    std::optional<TapeFrame> m_last;            // that was settled
    std::vector<Irregularity> m_irregularities; // after m_pending
};

} // namespace scenedetect
