#include "reading/media/PacketReader.h"

#include "reading/dv/DvCheck.h"
#include "reading/ffmpeg/Stamps.h"

#include <utility>

namespace scenedetect {
namespace {

// The picture takes over the reference to the packet's bytes, which are not copied.
void MoveBytes(AVPacket& packet, Picture& picture) {
    AVBufferRef* reference = std::exchange(packet.buf, nullptr);
    picture.Hold({packet.data, static_cast<std::size_t>(packet.size)},
                 {reference, [](void* held) {
                      auto* buffer = static_cast<AVBufferRef*>(held);
                      av_buffer_unref(&buffer);
                  }});
    av_packet_unref(&packet);
}

} // namespace

PacketReader::PacketReader(std::unique_ptr<MediaInput> input, AVPacket& first, const PictureFormat& format,
                           const FrameClock::Setup& setup, const DamageLog& damage)
    : m_input(std::move(input)),
      m_packet(av_packet_alloc()),
      m_firstFormat(format),
      m_isDv(format.fourcc == kDvFourcc),
      m_clock(setup),
      m_damage(damage) {
    av_packet_move_ref(m_packet.get(), &first);
    m_info = m_input->Info();
    m_info.delay = m_input->MicrosecondsIn(setup.origin.value_or(PresentationTime(*m_packet)));
    if (m_isDv && !m_info.startTimecode) {
        const std::span<const std::uint8_t> bytes(m_packet->data, static_cast<std::size_t>(m_packet->size));
        if (const auto system = IdentifyDvFrame(bytes))
            m_info.startTimecode = DvMediaInfo(bytes, *system).startTimecode;
    }
    m_damage.Begin();
}

bool PacketReader::ReadPacket() {
    if (std::exchange(m_isPending, false))
        return true;
    if (m_input->ReadPacket(*m_packet))
        return true;
    if (!m_input->BreakOffReason().empty()) {
        m_damage.Warn("breaks off: " + m_input->BreakOffReason());
        SetBrokenOff();
    }
    m_damage.Summarize();
    return false;
}

bool PacketReader::IdentifyPacket(PictureFormat& format) const {
    const std::span<const std::uint8_t> bytes(m_packet->data, static_cast<std::size_t>(m_packet->size));
    if (!m_isDv) {
        format = m_firstFormat;
        return bytes.size() >= format.imageBytes;
    }
    const auto system = IdentifyDvFrame(bytes);
    if (system)
        format = DvPictureFormat(bytes, *system);
    return system.has_value();
}

bool PacketReader::Next(Picture& picture) {
    picture.Clear();
    while (ReadPacket()) {
        const FilePlace place = m_clock.Next(PresentationTime(*m_packet), m_packet->pos);
        // What an edit list cuts away, and what is not a whole picture.
        const bool isCut = (m_packet->flags & AV_PKT_FLAG_DISCARD) != 0;
        if (isCut || !IdentifyPacket(picture.format) || av_packet_make_refcounted(m_packet.get()) < 0) {
            if (!isCut)
                m_damage.Report("frame " + std::to_string(place.frame) + " is damaged and left out");
            av_packet_unref(m_packet.get());
            continue;
        }
        picture.place = place;
        MoveBytes(*m_packet, picture);
        SetFraction(m_input->Fraction());
        return true;
    }
    return false;
}

} // namespace scenedetect
