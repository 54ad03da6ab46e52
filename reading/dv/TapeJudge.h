// Where something new begins on a DV tape: recordings, and changes of what its frames say of themselves.
#pragma once

#include "reading/dv/RecordingClock.h"

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace scenedetect {

/// Why a tape may be cut at a frame.
enum class TapeCut {
    Recording,  ///< the recording's clock, date and time of day, does not go on
    RecordFlag, ///< the recorder's start mark
    RecordStop, ///< the recorder's stop mark was on the frame before
    Timecode,   ///< a jump
    Aspect,
    Audio, ///< sampling rate, quantisation or channels; not whether the rate is locked
    Lines,
};
inline constexpr std::size_t kTapeCuts = static_cast<std::size_t>(TapeCut::Lines) + 1;

/// The word for what begins: "recording", "record-flag", "record-stop", "timecode", "aspect", "audio" or
/// "lines".
[[nodiscard]] std::string TapeCutWord(TapeCut cut);

/// How a frame goes on from those before.
struct TapeVerdict {
    std::optional<std::int64_t> recordingBreak; ///< seconds by which the clock moved more than the frames
    std::optional<std::int64_t> timecodeJump;   ///< frames by which the timecode moved more than there are
    std::optional<DvSystem> systemBefore;       ///< where it has changed; and so on
    std::optional<DvAspect> aspectBefore;
    std::optional<DvAudioFormat> audioBefore;
    std::optional<DvAudioFormat> audio; ///< that holds from here on, whatever a stray pack says
    // What this frame alone says, and the next one no more: that begins nothing.
    bool isTimeStray = false;
    bool isTimecodeStray = false;
    bool isAspectStray = false;
    bool isAudioStray = false;
    /// By TapeCut: what begins here. Of a fault that every frame has, only the first counts.
    std::array<bool, kTapeCuts> begins{};
    /// What the recorder recorded in one go ends before this frame (docs/tape-log.md has the rule). So does
    /// the first frame begin one.
    bool beginsRecording = false;

    [[nodiscard]] bool Begins(TapeCut cut) const { return begins[static_cast<std::size_t>(cut)]; }
};

/// Is told of frame after frame, and judges each once the next one is there, by which stray packs are known.
/// One thread at a time.
class TapeJudge {
  public:
    /// `frame` is its number in the file, where frames that are missing count; they ascend. The verdict on
    /// the frame before, unless this is the first.
    [[nodiscard]] std::optional<TapeVerdict> Note(std::int64_t frame, const DvFrameInfo& info);
    /// The verdict on the last frame, if there is one; the end.
    [[nodiscard]] std::optional<TapeVerdict> Finish();

  private:
    struct Frame : DvFrameInfo {
        std::int64_t number = 0;
        std::int64_t position = 0; // ticks from the first frame
    };
    struct Count {
        std::int64_t timecode = 0; // frames
        std::int64_t dayFrames = 0;
        std::int64_t frame = 0;
        DvSystem system = DvSystem::Lines525;
    };

    [[nodiscard]] TapeVerdict Judge(const Frame& frame, const Frame* next);
    /// Whether the clock goes on at the frame.
    bool JudgeClock(const Frame& frame, const Frame* next, TapeVerdict& verdict);
    void JudgeTimecode(const Frame& frame, const Frame* next, TapeVerdict& verdict);
    void NoteBeginnings(const Frame& frame, TapeVerdict& verdict);
    [[nodiscard]] static std::optional<Count> CountOf(const Frame& frame);
    [[nodiscard]] std::int64_t JumpAt(const Count& count) const;

    std::optional<Frame> m_pending; // the last that was noted
    RecordingClock m_clock;
    std::optional<Count> m_count;
    std::optional<DvSystem> m_system; // of the last that was judged; and so on
    std::optional<DvAspect> m_aspect;
    std::optional<DvAudioFormat> m_audio;
    bool m_isRecordingEnd = false;
    std::array<std::optional<std::int64_t>, kTapeCuts> m_latest; // frame that each was last seen at
};

} // namespace scenedetect
