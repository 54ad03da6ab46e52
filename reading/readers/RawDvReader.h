// Reads raw DV streams, frame by frame, whatever line system each frame is, and through damage.
#pragma once

#include "reading/dv/DvCheck.h"
#include "reading/dv/TapeTime.h"
#include "reading/readers/ByteInput.h"
#include "reading/readers/DamageLog.h"
#include "reading/readers/PictureReader.h"
#include "reading/readers/ReadWindow.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <span>

namespace scenedetect {

/// Joined captures of both line systems are one stream. Whole frames are handed out where they were read to,
/// with whatever blocks of theirs are damaged; frames of which bytes are missing are not. Positions count the
/// frames of the file, those that a gap has swallowed too. docs/dv.md has the rules.
class RawDvReader final : public PictureReader {
  public:
    /// Reads up to the first whole frame; with one more thread to read ahead, if `input` has ReadAt.
    /// HostError when there is no frame.
    RawDvReader(std::shared_ptr<ByteInput> input, const DamageLog& damage, bool hasThread = false);

    [[nodiscard]] const PictureFormat& Format() const override { return m_first.format; }
    [[nodiscard]] TimeScale Scale() const override;
    [[nodiscard]] MediaInfo Info() const override { return m_info; }
    [[nodiscard]] std::string Description() const override { return "raw DV stream"; }
    [[nodiscard]] bool Next(Picture& picture) override;

  private:
    struct CountedTime {
        TapeTime time;
        std::int64_t frame = 0;
    };

    [[nodiscard]] bool ReadFrame(Picture& picture);
    [[nodiscard]] std::span<std::uint8_t> Peek(std::size_t bytes);
    [[nodiscard]] bool FindEarlyFrame();
    [[nodiscard]] bool FindNextFrame();
    void ReportEnd(std::size_t bytes, bool isFrame);
    void CloseGap(const TapeTime& time);
    [[nodiscard]] std::optional<std::int64_t> LostByTime(const TapeTime& time, std::int64_t least);
    [[nodiscard]] bool IsNextFrameAfter(const TapeTime& time);
    void CountFrames(std::int64_t frames);
    void HandOut(Picture& picture, const DvCheck& check);

    const std::shared_ptr<ByteInput> m_input;
    ReadWindow m_window;
    DamageLog m_damage;
    Picture m_first; // read ahead; its format stays here
    bool m_isFirstPending = false;
    Ratio m_rate;
    MediaInfo m_info;

    DvSystem m_system = DvSystem::Lines525; // of the frame before
    TapeTime m_time;                        // of the frame before
    std::optional<CountedTime> m_confirmed; // of the last frame whose time its neighbours bear out
    std::int64_t m_frame = 0;               // number of the next
    std::int64_t m_frameTime = 0;
    bool m_hasFrames = false;    // some frame was there already, if only a damaged one
    std::int64_t m_earliest = 0; // offset at which a frame may begin at all
    std::int64_t m_gapBytes = 0; // between the frame before and the window
};

} // namespace scenedetect
