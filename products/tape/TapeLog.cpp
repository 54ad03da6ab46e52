#include "products/tape/TapeLog.h"

#include "reading/dv/PackText.h"

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

} // namespace

TapeLog::TapeLog(TapeLogFormat format, std::string source, TapeLogText::Sink sink)
    : m_text(format, std::move(source), std::move(sink)),
      m_rows([this](const TapeRow& row) { m_text.Add(row); }) {}

void TapeLog::Note(const TapeFrame& noted) {
    if (const auto verdict = m_judge.Note(noted.place.frame, noted))
        Settle(*m_pending, *verdict);
    SettleIrregularities();
    m_pending = noted;
}

void TapeLog::Note(const Irregularity& irregularity) {
    // Damage to the blocks of frames that are still to come is seen in these, whatever reader they come from.
    const bool isSeenLater = irregularity.kind == IrregularityKind::DamagedBlocks &&
                             (!m_pending || irregularity.frame > m_pending->place.frame);
    if (!isSeenLater)
        m_irregularities.push_back(irregularity);
}

void TapeLog::Finish() {
    if (const auto verdict = m_judge.Finish())
        Settle(*m_pending, *verdict);
    SettleIrregularities();
    m_rows.Finish(m_last ? m_last->place.frame + 1 : 0);
    m_text.End();
}

void TapeLog::Settle(const TapeFrame& frame, const TapeVerdict& verdict) {
    const bool begins = verdict.beginsRecording;
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
    add(!frame.packs.audio, TapeEvent::NoAudioFormat);
    add(verdict.isTimecodeStray, TapeEvent::StrayTimecode);
    add(verdict.isTimeStray, TapeEvent::StrayRecordingTime);
    add(verdict.isAspectStray, TapeEvent::StrayAspect);
    add(verdict.isAudioStray, TapeEvent::StrayAudioFormat);
    add(frame.audio.errors != 0, TapeEvent::AudioErrors, frame.audio.errors);
    add(frame.audio.isMuted, TapeEvent::MutedAudio);
    AddChanges(verdict, row);
    AddBlocks(frame, row);
    m_last = frame;
}

void TapeLog::AddChanges(const TapeVerdict& verdict, TapeRow row) {
    row.size.reset();
    const auto add = [this, &row](TapeEvent event, const auto& before) {
        if (!before)
            return;
        row.event = event;
        row.before = TextOf(*before);
        m_rows.Add(row);
    };
    add(TapeEvent::LineSystemChange, verdict.systemBefore);
    add(TapeEvent::AspectChange, verdict.aspectBefore);
    add(TapeEvent::AudioChange, verdict.audioBefore);
}

void TapeLog::AddBlocks(const TapeFrame& frame, TapeRow row) {
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
