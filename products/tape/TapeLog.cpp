#include "products/tape/TapeLog.h"

#include <algorithm>
#include <utility>

namespace scenedetect {
namespace {

TapeEvent EventOf(IrregularityKind kind) {
    switch (kind) {
    case IrregularityKind::UnknownBytes:
        return TapeEvent::UnknownBytes;
    case IrregularityKind::Unreadable:
        return TapeEvent::Unreadable;
    case IrregularityKind::MissingBytes:
        return TapeEvent::MissingBytes;
    case IrregularityKind::MissingFrames:
        return TapeEvent::MissingFrames;
    case IrregularityKind::DamagedBlocks:
        return TapeEvent::DamagedBlocks;
    case IrregularityKind::CutEnd:
        break;
    }
    return TapeEvent::CutEnd;
}

std::int64_t DayFramesOf(DvSystem system, bool isDropFrame) {
    constexpr DvTimecode kLastHour{23, 0, 0, 0, false};
    DvTimecode hour = kLastHour;
    hour.isDropFrame = isDropFrame;
    // Every hour has as many.
    return FrameCountOf(hour, system) / hour.hours * (hour.hours + 1);
}

} // namespace

TapeLog::TapeLog(TapeLogFormat format, std::string source, TapeLogText::Sink sink)
    : m_text(format, std::move(source), std::move(sink)),
      m_rows([this](const TapeRow& row) { m_text.Add(row); }) {}

void TapeLog::Note(const TapeFrame& noted) {
    Frame frame{noted};
    if (m_pending)
        frame.position = m_pending->position +
                         (frame.place.frame - m_pending->place.frame) * DvFrameTicks(m_pending->system);
    if (m_pending)
        Settle(*m_pending, &frame);
    SettleIrregularities();
    m_pending = frame;
}

void TapeLog::Note(const Irregularity& irregularity) {
    // Damage to the blocks of frames that are still to come is seen in these, whatever reader they come from.
    const bool isSeenLater = irregularity.kind == IrregularityKind::DamagedBlocks &&
                             (!m_pending || irregularity.frame > m_pending->place.frame);
    if (!isSeenLater)
        m_irregularities.push_back(irregularity);
}

void TapeLog::Finish() {
    if (m_pending)
        Settle(*m_pending, nullptr);
    SettleIrregularities();
    m_rows.Finish(m_last ? m_last->place.frame + 1 : 0);
    m_text.End();
}

void TapeLog::Settle(const Frame& frame, const Frame* next) {
    Verdict verdict;
    JudgeClock(frame, next, verdict);
    JudgeTimecode(frame, next, verdict);
    const bool begins = BeginsRecording(frame, verdict);
    TapeRow row;
    row.frame = row.lastFrame = frame.place.frame;
    row.frames = 1;
    row.byteOffset = frame.place.byteOffset;
    row.system = frame.system;
    row.packs = frame.packs;
    const auto add = [this, &row](bool isSo, TapeEvent event, std::optional<std::int64_t> size = {}) {
        if (!isSo)
            return;
        row.event = event;
        row.size = size;
        m_rows.Add(row);
    };
    if (begins || m_rows.IsFull()) {
        row.event = begins ? TapeEvent::Recording : TapeEvent::RecordingContinued;
        m_rows.Begin(row);
    }
    add(verdict.recordingBreak.has_value(), TapeEvent::RecordingBreak, verdict.recordingBreak);
    add(verdict.timecodeJump.has_value(), TapeEvent::TimecodeJump, verdict.timecodeJump);
    add(frame.packs.isRecordingStart, TapeEvent::RecorderStart);
    add(frame.packs.isRecordingEnd, TapeEvent::RecorderStop);
    add(!frame.packs.timecode, TapeEvent::NoTimecode);
    add(!frame.packs.date, TapeEvent::NoRecordingDate);
    add(!frame.packs.time, TapeEvent::NoRecordingTime);
    add(verdict.isTimecodeStray, TapeEvent::StrayTimecode);
    add(verdict.isTimeStray, TapeEvent::StrayRecordingTime);
    AddChanges(row);
    AddBlocks(frame, row);
    m_last = frame;
}

void TapeLog::JudgeClock(const Frame& frame, const Frame* next, Verdict& verdict) {
    const auto reading = ReadingOf(frame.packs, frame.position);
    if (!reading)
        return;
    const auto size = m_clock.BreakAt(*reading);
    const auto following = next ? ReadingOf(next->packs, next->position) : std::nullopt;
    if (!size) {
        verdict.isClockGoingOn = m_clock.HasReading();
    } else if (following && !m_clock.BreakAt(*following)) {
        verdict.isTimeStray = true;
        return;
    } else {
        verdict.recordingBreak = size;
    }
    m_clock.Follow(*reading);
}

void TapeLog::JudgeTimecode(const Frame& frame, const Frame* next, Verdict& verdict) {
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

std::optional<TapeLog::Count> TapeLog::CountOf(const Frame& frame) {
    const auto& timecode = frame.packs.timecode;
    if (!timecode)
        return std::nullopt;
    return Count{FrameCountOf(*timecode, frame.system), DayFramesOf(frame.system, timecode->isDropFrame),
                 frame.place.frame, frame.system};
}

// By how many frames the timecode has gone more than the frames have: the nearest of both directions.
std::int64_t TapeLog::JumpAt(const Count& count) const {
    const std::int64_t day = count.dayFrames;
    const std::int64_t jump = (count.timecode - m_count->timecode - (count.frame - m_count->frame)) % day;
    if (jump > day / 2)
        return jump - day;
    return jump < -day / 2 ? jump + day : jump;
}

bool TapeLog::BeginsRecording(const Frame& frame, const Verdict& verdict) const {
    // Where something is wrong with every frame, not every frame is a recording.
    const auto isFirst = [this, &frame](TapeEvent event) {
        return !m_rows.IsRunning(event, frame.place.frame);
    };
    if (!m_last || m_last->system != frame.system)
        return true;
    if (verdict.recordingBreak && isFirst(TapeEvent::RecordingBreak))
        return true;
    // While the clock goes on, it is frames that are missing, or a timecode that was set.
    if (verdict.timecodeJump && !verdict.isClockGoingOn && isFirst(TapeEvent::TimecodeJump))
        return true;
    return frame.packs.isRecordingStart && isFirst(TapeEvent::RecorderStart);
}

void TapeLog::AddChanges(TapeRow row) {
    row.size.reset();
    if (m_last && m_last->system != row.system) {
        row.event = TapeEvent::LineSystemChange;
        row.systemBefore = m_last->system;
        m_rows.Add(row);
        row.systemBefore.reset();
    }
    if (!row.packs.aspect)
        return;
    row.aspectBefore = std::exchange(m_aspect, row.packs.aspect);
    if (!row.aspectBefore || row.aspectBefore == m_aspect)
        return;
    row.event = TapeEvent::AspectChange;
    m_rows.Add(row);
}

void TapeLog::AddBlocks(const Frame& frame, TapeRow row) {
    if (const std::int64_t concealed = frame.blocks.Count(); concealed != 0) {
        row.event = TapeEvent::ConcealedBlocks;
        row.size = concealed;
        row.blocks = frame.blocks;
        m_rows.Add(row);
        row.blocks = {};
    }
    if (frame.damagedBlocks == 0)
        return;
    row.event = TapeEvent::DamagedBlocks;
    row.size = frame.damagedBlocks;
    if (row.byteOffset >= 0)
        row.byteOffset += frame.firstDamaged * std::int64_t{kDifBlockBytes};
    m_rows.Add(row);
}

void TapeLog::SettleIrregularities() {
    for (const Irregularity& each : std::exchange(m_irregularities, {})) {
        TapeRow row;
        row.event = EventOf(each.kind);
        row.frame = each.frame;
        row.byteOffset = each.byteOffset;
        if (m_last)
            row.system = m_last->system;
        row.size = each.bytes;
        row.frames = each.frames;
        if (each.kind == IrregularityKind::MissingFrames)
            row.size.reset();
        if (each.kind == IrregularityKind::DamagedBlocks) {
            row.size = each.bytes / std::int64_t{kDifBlockBytes};
            row.frames = 1;
            if (m_last && m_last->place.frame == each.frame)
                row.packs = m_last->packs;
        }
        row.lastFrame = row.frame + std::max<std::int64_t>(row.frames, 1) - 1;
        m_rows.Add(row);
    }
}

} // namespace scenedetect
