#include "reading/readers/RawDvReader.h"

#include "reading/base/HostError.h"
#include "reading/dv/DvPacks.h"

#include <algorithm>
#include <string>
#include <utility>

namespace scenedetect {

RawDvReader::RawDvReader(std::shared_ptr<ByteInput> input, const DamageLog& damage, bool hasThread)
    : m_input(std::move(input)), m_window(*m_input, hasThread), m_damage(damage) {
    if (!ReadFrame(m_first))
        throw HostError(m_input->Path() + (m_input->IsStopped() ? ": stopped before the first picture"
                                                                : ": no picture can be read"));
    m_isFirstPending = true;
    m_rate = DvRate(m_system);
    m_info = DvMediaInfo(m_first.Bytes(), m_system);
    m_info.isRawDv = true;
    m_damage.Begin();
}

TimeScale RawDvReader::Scale() const {
    return {{1, kDvTicksPerSecond}, m_rate};
}

bool RawDvReader::Next(Picture& picture) {
    picture.Clear();
    if (std::exchange(m_isFirstPending, false)) {
        const PictureFormat format = m_first.format;
        picture = std::exchange(m_first, Picture{});
        m_first.format = format;
        return true;
    }
    if (ReadFrame(picture))
        return true;
    if (!m_input->IsStopped() && m_input->Position() < m_input->Size()) {
        m_damage.Warn("has become shorter while it was read: ends at byte " +
                      std::to_string(m_input->Position()) + " of " + std::to_string(m_input->Size()));
        SetBrokenOff();
    }
    m_damage.Summarize();
    return false;
}

std::span<std::uint8_t> RawDvReader::Peek(std::size_t bytes) {
    return m_window.Peek(bytes, DvFrameBytes(m_system));
}

bool RawDvReader::ReadFrame(Picture& picture) {
    for (;;) {
        // No more than is needed is waited for: a stream may be live.
        auto data = Peek(DvFrameBytes(m_system));
        const DvSystem system = VoteDvSystem(data).value_or(m_system);
        const std::size_t frameBytes = DvFrameBytes(system);
        data = Peek(frameBytes);
        if (m_input->IsStopped())
            return false;
        DvCheck check = CheckDvFrame(data, system);
        if (data.size() < frameBytes) {
            if (!data.empty() && FindEarlyFrame())
                continue;
            ReportEnd(data.size(), check.blocks >= kLeastDvBlocks && check.IsPlausible());
            return false;
        }
        bool isWhole = check.IsPlausible();
        if (isWhole && check.lastGood != check.blocks - 1)
            isWhole = !HasDvFrameLostBytes(Peek(2 * kDifFrameBytes625), check);
        if (m_input->IsStopped())
            return false;
        if (isWhole) {
            HandOut(picture, check);
            return true;
        }
        if (FindEarlyFrame())
            continue;
        // Unknown bytes may come before the first frame, but so may one of which bytes are missing.
        if (!m_hasFrames) {
            m_system = system;
            m_hasFrames = m_gapBytes == 0 && check.firstDamaged >= kLeastDvBlocks;
        }
        if (!FindNextFrame())
            return false;
    }
}

// Bytes that were lost from the last block of the frame before, after its ID, leave that frame as good as
// whole, but the next begins inside that block.
bool RawDvReader::FindEarlyFrame() {
    constexpr std::size_t kBack = kDifBlockBytes - kDifIdBytes;
    static_assert(kBack <= ReadWindow::kBackBytes);
    if (m_gapBytes != 0 || m_window.Offset() < m_earliest + static_cast<std::int64_t>(kBack))
        return false;
    m_window.GoBack(kBack);
    const auto found = FindDvFrame(Peek(kBack + kDifFrameBytes625), 0, kBack);
    m_window.Drop(found.value_or(kBack));
    if (!found)
        return false;
    m_damage.Report({m_frame - 1, m_window.Offset() - static_cast<std::int64_t>(kDifIdBytes + *found),
                     kDifBlockBytes, IrregularityKind::DamagedBlocks, 0});
    m_earliest = m_window.Offset() + 1;
    return true;
}

// Moves the window to where the next frame begins; the bytes between make the gap.
bool RawDvReader::FindNextFrame() {
    // A frame in its place is taken even if its first header is damaged.
    const auto pitch = static_cast<std::int64_t>(DvFrameBytes(m_system));
    for (std::size_t from = 1;; from = 0) {
        const auto data = Peek(2 * kDifFrameBytes625);
        if (m_input->IsStopped())
            return false;
        const bool isEnd = data.size() < 2 * kDifFrameBytes625;
        // After this there is too little to judge a frame by.
        const std::size_t end = isEnd ? data.size() : data.size() - kDifFrameBytes625;
        const auto inPlace = static_cast<std::size_t>(pitch - m_gapBytes % pitch);
        auto found = FindDvFrame(data, from, std::min(end, inPlace));
        if (!found && inPlace <= end) {
            const auto rest = data.subspan(inPlace);
            const DvSystem system = VoteDvSystem(rest).value_or(m_system);
            if (rest.size() >= DvFrameBytes(system) && CheckDvFrame(rest, system).IsPlausible())
                found = inPlace;
        }
        const std::size_t step = found.value_or(std::min(end, inPlace));
        m_window.Drop(step);
        m_gapBytes += static_cast<std::int64_t>(step);
        if (found)
            return true;
        if (isEnd && step == end) {
            ReportEnd(0, false);
            return false;
        }
    }
}

// What is left at the end of the file: the beginning of a frame, or bytes that continue a gap.
void RawDvReader::ReportEnd(std::size_t bytes, bool isFrame) {
    const auto rest = static_cast<std::int64_t>(bytes);
    if (!isFrame) {
        m_window.Drop(bytes);
        m_gapBytes += rest;
    }
    if (m_gapBytes != 0)
        CloseGap({});
    if (isFrame) {
        m_damage.Report({m_frame, m_window.Offset(), rest, IrregularityKind::CutEnd, 1});
        SetBrokenOff();
    }
}

// `time` is that of the frame after the gap.
void RawDvReader::CloseGap(const TapeTime& time) {
    const std::int64_t gap = std::exchange(m_gapBytes, 0);
    const std::int64_t offset = m_window.Offset() - gap;
    const auto frameBytes = static_cast<std::int64_t>(DvFrameBytes(m_system));
    // What precedes the first frame is not the file's.
    std::int64_t lost = m_hasFrames ? (gap + frameBytes / 2) / frameBytes : 0;
    const auto byTime = LostByTime(time, gap / frameBytes);
    const bool isByTime = byTime && *byTime != lost && IsNextFrameAfter(time);
    if (isByTime)
        lost = *byTime;
    const std::int64_t missing = lost * frameBytes - gap;
    if (gap == 0 && lost != 0)
        m_damage.Report({m_frame, offset, 0, IrregularityKind::MissingFrames, lost});
    else if (gap != 0 && lost == 0)
        m_damage.Report({m_frame, offset, gap, IrregularityKind::UnknownBytes, 0});
    else if (missing > 0)
        m_damage.Report({m_frame, offset, missing, IrregularityKind::MissingBytes, lost});
    else if (gap != 0)
        m_damage.Report({m_frame, offset, gap, IrregularityKind::Unreadable, lost});
    CountFrames(lost);
    if (isByTime || FramesApart(m_time, time) == lost + 1)
        m_confirmed = {time, m_frame};
    m_time = time;
}

// How many frames the gap before this one has swallowed, counted from the last confirmed frame of the second
// before; at least as many as it has bytes of.
std::optional<std::int64_t> RawDvReader::LostByTime(const TapeTime& time, std::int64_t least) {
    const int second = DvTimecodeRate(m_system);
    if (!m_confirmed || m_frame - m_confirmed->frame > second)
        return std::nullopt;
    const auto apart = FramesApart(m_confirmed->time, time);
    const std::int64_t lost = m_confirmed->frame + apart.value_or(0) - m_frame;
    return apart && lost >= least && lost <= least + second ? std::optional(lost) : std::nullopt;
}

// One misread timecode is not a gap: the frame after it must go on from it.
bool RawDvReader::IsNextFrameAfter(const TapeTime& time) {
    const std::size_t frameBytes = DvFrameBytes(time.system);
    const auto data = Peek(2 * frameBytes);
    if (data.size() < 2 * frameBytes)
        return false;
    return FramesApart(time, TapeTimeOf(data.subspan(frameBytes), time.system)) == 1;
}

void RawDvReader::CountFrames(std::int64_t frames) {
    m_frame += frames;
    m_frameTime += frames * DvFrameTicks(m_system);
}

void RawDvReader::HandOut(Picture& picture, const DvCheck& check) {
    const std::size_t frameBytes = DvFrameBytes(check.system);
    const TapeTime time = TapeTimeOf(Peek(frameBytes), check.system);
    CloseGap(time);
    m_hasFrames = true;
    m_system = check.system;

    const std::int64_t offset = m_window.Offset();
    if (const int damaged = check.blocks - check.goodBlocks; damaged != 0)
        m_damage.Report({m_frame, offset + check.firstDamaged * std::int64_t{kDifBlockBytes},
                         damaged * std::int64_t{kDifBlockBytes}, IrregularityKind::DamagedBlocks, 0});
    picture.Hold(Peek(frameBytes), m_window.Share());
    picture.place = {m_frame, m_frameTime, offset};
    picture.format = DvPictureFormat(picture.Bytes(), check.system);
    m_window.Drop(frameBytes);
    m_earliest = offset + 1;
    CountFrames(1);
    SetFraction(m_input->Fraction());
}

} // namespace scenedetect
