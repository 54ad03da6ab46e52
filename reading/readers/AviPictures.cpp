#include "reading/readers/AviPictures.h"

#include "reading/base/HostError.h"
#include "reading/dv/DvCheck.h"

#include <cstdlib>
#include <string_view>
#include <utility>

namespace scenedetect {

AviPictures::AviPictures(std::shared_ptr<ByteInput> input, const DamageLog& damage)
    : m_input(std::move(input)),
      m_reader(*m_input),
      m_damage(damage),
      m_uncompressed(UncompressedFormat(m_reader.Video().format)),
      m_rate(m_reader.Video().rate) {
    if (m_uncompressed) {
        m_firstFormat = *m_uncompressed;
        m_info.width = m_firstFormat.width;
        m_info.height = std::abs(m_firstFormat.height);
    } else {
        // Only a frame itself tells which DV it is, and whether it is any.
        const auto frame = m_reader.Next();
        if (!frame)
            throw HostError(m_input->Path() + ": no picture can be read");
        if (!ReadFrame(*frame, m_first))
            throw HostError(m_input->Path() + ": neither DV of 25 Mbit/s nor uncompressed video");
        m_firstFormat = m_first.format;
        const DvSystem system = *IdentifyDvFrame(m_first.Bytes());
        m_rate = SettleDvRate(m_rate, system);
        m_info = DvMediaInfo(m_first.Bytes(), system);
        m_isFirstPending = true;
    }
    // Frames of interleaved DV have it, others have it beside them.
    if (!m_reader.Video().isInterleavedDv) {
        m_info.audio.reset();
        if (const auto& audio = m_reader.Audio())
            m_info.audio = AudioFormat{audio->channels, audio->sampleRate};
    }
    m_damage.Begin();
}

bool AviPictures::ReadFrame(const AviReader::Frame& frame, Picture& picture) {
    const bool isDv = !m_uncompressed;
    const std::size_t bytes = isDv ? frame.bytes : m_uncompressed->imageBytes;
    if (frame.bytes < bytes || (isDv && !DvSystemOfSize(bytes)))
        return false;
    if (m_input->Read({picture.OwnBuffer(bytes), bytes}) != bytes)
        return false;
    picture.HoldOwnBuffer(bytes);
    const auto system = isDv ? IdentifyDvFrame(picture.Bytes()) : std::nullopt;
    if (isDv && !system)
        return false;
    picture.format = isDv ? DvPictureFormat(picture.Bytes(), *system) : *m_uncompressed;
    // Times are counted in frames.
    picture.place = {frame.number, frame.number, frame.offset};
    return true;
}

bool AviPictures::Next(Picture& picture) {
    picture.Clear();
    if (std::exchange(m_isFirstPending, false)) {
        picture = std::move(m_first);
        return true;
    }
    while (const auto frame = m_reader.Next()) {
        if (ReadFrame(*frame, picture)) {
            SetFraction(m_input->Fraction());
            return true;
        }
        m_damage.Report("frame " + std::to_string(frame->number) + " is damaged and left out");
    }
    if (!m_reader.BreakOffReason().empty()) {
        m_damage.Warn("breaks off: " + m_reader.BreakOffReason());
        SetBrokenOff();
    }
    m_damage.Summarize();
    return false;
}

} // namespace scenedetect
