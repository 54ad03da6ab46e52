#include "hosts/shared/RawDvReader.h"

#include "hosts/shared/HostError.h"

#include <algorithm>
#include <utility>

namespace scenedetect {
namespace {

// A unit in which the frames of both line systems have whole lengths.
constexpr Ratio kUnit{1, 30000};

std::int64_t FrameUnits(DvSystem system) {
    return system == DvSystem::Lines625 ? 1200 : 1001;
}

} // namespace

RawDvReader::RawDvReader(std::unique_ptr<ByteInput> input, const DamageLog& damage)
    : m_input(std::move(input)), m_damage(damage) {
    // The first frame is read once to learn its format; its bytes are then the first to be read again.
    Picture first;
    if (!Next(first))
        throw HostError(m_input->Path() + ": no picture can be read");
    m_firstFormat = first.format;
    m_rate = DvRate(m_system);
    const auto following = std::exchange(m_carried, {});
    Carry(first.Bytes());
    m_carried.insert(m_carried.end(), following.begin(), following.end());
    m_next = first.place;
    m_damage.Begin();
}

TimeScale RawDvReader::Scale() const {
    return {kUnit, m_rate};
}

std::size_t RawDvReader::Fill(std::uint8_t* block, std::size_t have, std::size_t wanted) {
    if (have >= wanted)
        return have;
    return have + m_input->Read({block + have, wanted - have});
}

void RawDvReader::Carry(std::span<const std::uint8_t> bytes) {
    m_carried.assign(bytes.begin(), bytes.end());
}

bool RawDvReader::Next(Picture& picture) {
    picture.Clear();
    if (ReadFrame(picture))
        return true;
    m_damage.Summarize();
    return false;
}

bool RawDvReader::ReadFrame(Picture& picture) {
    for (;;) {
        // Room for what was carried over, at most one frame, and for what completes another.
        std::uint8_t* block = picture.OwnBlock(2 * kDifFrameBytes625);
        std::size_t have = m_carried.size();
        std::copy(m_carried.begin(), m_carried.end(), block);
        m_carried.clear();

        have = Fill(block, have, DvFrameBytes(m_system));
        if (have == 0 || m_input->IsStopped())
            return false;
        const std::span<const std::uint8_t> data(block, have);
        if (!IsDvHeader(data)) {
            if (!FindNextFrame(data, have < DvFrameBytes(m_system)))
                return false;
            continue;
        }
        const DvSystem system = AnnouncedDvSystem(data).value_or(m_system);
        const std::size_t bytes = DvFrameBytes(system);
        have = Fill(block, have, bytes);
        if (m_input->IsStopped())
            return false;
        if (have < bytes) {
            m_damage.Warn("ends inside frame " + std::to_string(m_next.frame) + ", which is left out");
            return false;
        }
        Carry({block + bytes, have - bytes});
        if (m_skipped != 0)
            CountLostFrames();
        m_system = system;

        picture.HoldOwnBlock(bytes);
        picture.place = m_next;
        picture.format = DvPictureFormat(system);
        m_next.frame += 1;
        m_next.time += FrameUnits(system);
        m_next.byteOffset += static_cast<std::int64_t>(bytes);
        SetFraction(m_input->Fraction());
        return true;
    }
}

// Carries over what begins with the next frame's start, or may begin it.
bool RawDvReader::FindNextFrame(std::span<const std::uint8_t> data, bool isEnd) {
    const auto found = FindDvFrame(data, 1);
    const std::size_t keep = found ? data.size() - *found : std::min(data.size() - 1, kDvStartBytes - 1);
    const std::size_t skip = isEnd && !found ? data.size() : data.size() - keep;
    if (m_skipped == 0)
        m_damage.Report("no DV data at byte " + std::to_string(m_next.byteOffset) + ", where frame " +
                        std::to_string(m_next.frame) + " should be");
    m_skipped += static_cast<std::int64_t>(skip);
    m_next.byteOffset += static_cast<std::int64_t>(skip);
    if (isEnd && !found)
        return false;
    Carry(data.last(keep));
    return true;
}

void RawDvReader::CountLostFrames() {
    // What precedes the first frame is none of the file's.
    const auto frameBytes = static_cast<std::int64_t>(DvFrameBytes(m_system));
    const std::int64_t lost = m_next.frame == 0 ? 0 : (m_skipped + frameBytes / 2) / frameBytes;
    m_next.frame += lost;
    m_next.time += lost * FrameUnits(m_system);
    m_skipped = 0;
}

} // namespace scenedetect
