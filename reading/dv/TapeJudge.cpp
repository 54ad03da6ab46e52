#include "reading/dv/TapeJudge.h"

#include <utility>

namespace scenedetect {
namespace {

std::int64_t DayFramesOf(DvSystem system, bool isDropFrame) {
    constexpr DvTimecode kLastHour{23, 0, 0, 0, false};
    DvTimecode hour = kLastHour;
    hour.isDropFrame = isDropFrame;
    // Every hour has as many.
    return FrameCountOf(hour, system) / hour.hours * (hour.hours + 1);
}

// What the frame says that those before did not; one that says nothing is no change.
template <typename Value>
std::optional<Value> JudgeChange(std::optional<Value> DvPacks::*member, const DvPacks& packs,
                                 const DvPacks* next, std::optional<Value>& known, bool& isStray) {
    if (!(packs.*member) || packs.*member == known)
        return std::nullopt;
    isStray = known && next && next->*member == known;
    return isStray ? std::nullopt : std::exchange(known, packs.*member);
}

} // namespace

std::string TapeCutWord(TapeCut cut) {
    constexpr std::array kWords = {"recording", "record-flag", "record-stop", "timecode",
                                   "aspect",    "audio",       "lines"};
    return kWords[static_cast<std::size_t>(cut)];
}

std::optional<TapeVerdict> TapeJudge::Note(std::int64_t number, const DvFrameInfo& info) {
    Frame frame{info, number};
    if (frame.packs.audio)
        frame.packs.audio->isLocked = false; // it does not matter here
    std::optional<TapeVerdict> verdict;
    if (m_pending) {
        frame.position = m_pending->position + (number - m_pending->number) * DvFrameTicks(m_pending->system);
        verdict = Judge(*m_pending, &frame);
    }
    m_pending = frame;
    return verdict;
}

std::optional<TapeVerdict> TapeJudge::Finish() {
    const auto last = std::exchange(m_pending, std::nullopt);
    return last ? std::optional(Judge(*last, nullptr)) : std::nullopt;
}

TapeVerdict TapeJudge::Judge(const Frame& frame, const Frame* next) {
    TapeVerdict verdict;
    const bool isFirst = !m_system;
    const bool isClockGoingOn = JudgeClock(frame, next, verdict);
    JudgeTimecode(frame, next, verdict);
    const DvPacks* following = next ? &next->packs : nullptr;
    verdict.aspectBefore =
        JudgeChange(&DvPacks::aspect, frame.packs, following, m_aspect, verdict.isAspectStray);
    verdict.audioBefore = JudgeChange(&DvPacks::audio, frame.packs, following, m_audio, verdict.isAudioStray);
    verdict.audio = m_audio;
    if (const auto before = std::exchange(m_system, frame.system); before != frame.system)
        verdict.systemBefore = before;
    NoteBeginnings(frame, verdict);
    // While the clock goes on, it is frames that are missing, or a timecode that was set.
    verdict.beginsRecording = isFirst || verdict.Begins(TapeCut::Lines) ||
                              verdict.Begins(TapeCut::Recording) || verdict.Begins(TapeCut::RecordFlag) ||
                              (verdict.Begins(TapeCut::Timecode) && !isClockGoingOn);
    return verdict;
}

bool TapeJudge::JudgeClock(const Frame& frame, const Frame* next, TapeVerdict& verdict) {
    const auto reading = ReadingOf(frame.packs, frame.position);
    if (!reading)
        return false;
    const bool hadReading = m_clock.HasReading();
    const auto size = m_clock.BreakAt(*reading);
    const auto following = next ? ReadingOf(next->packs, next->position) : std::nullopt;
    verdict.isTimeStray = size && following && !m_clock.BreakAt(*following);
    if (verdict.isTimeStray)
        return false;
    verdict.recordingBreak = size;
    m_clock.Follow(*reading);
    return hadReading && !size;
}

void TapeJudge::JudgeTimecode(const Frame& frame, const Frame* next, TapeVerdict& verdict) {
    const auto count = CountOf(frame);
    if (!count)
        return;
    if (m_count && m_count->system == count->system) {
        const std::int64_t jump = JumpAt(*count);
        const auto following = next ? CountOf(*next) : std::nullopt;
        if (jump != 0 && following && following->system == count->system && JumpAt(*following) == 0) {
            verdict.isTimecodeStray = true;
            return;
        }
        if (jump != 0)
            verdict.timecodeJump = jump;
    }
    m_count = count;
}

void TapeJudge::NoteBeginnings(const Frame& frame, TapeVerdict& verdict) {
    const bool isAfterEnd = std::exchange(m_isRecordingEnd, frame.packs.isRecordingEnd) && !m_isRecordingEnd;
    const std::array<bool, kTapeCuts> seen = {
        verdict.recordingBreak.has_value(), frame.packs.isRecordingStart,     isAfterEnd,
        verdict.timecodeJump.has_value(),   verdict.aspectBefore.has_value(), verdict.audioBefore.has_value(),
        verdict.systemBefore.has_value()};
    for (std::size_t i = 0; i < kTapeCuts; ++i) {
        if (!seen[i])
            continue;
        verdict.begins[i] = !m_latest[i] || *m_latest[i] + 1 < frame.number;
        m_latest[i] = frame.number;
    }
}

std::optional<TapeJudge::Count> TapeJudge::CountOf(const Frame& frame) {
    const auto& timecode = frame.packs.timecode;
    if (!timecode)
        return std::nullopt;
    return Count{FrameCountOf(*timecode, frame.system), DayFramesOf(frame.system, timecode->isDropFrame),
                 frame.number, frame.system};
}

// By how many frames the timecode has gone more than the frames have: the nearest of both directions.
std::int64_t TapeJudge::JumpAt(const Count& count) const {
    const std::int64_t day = count.dayFrames;
    const std::int64_t jump = (count.timecode - m_count->timecode - (count.frame - m_count->frame)) % day;
    if (jump > day / 2)
        return jump - day;
    return jump < -day / 2 ? jump + day : jump;
}

} // namespace scenedetect
