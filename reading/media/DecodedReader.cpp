#include "reading/media/DecodedReader.h"

#include "reading/base/HostError.h"
#include <limits>
#include <utility>

namespace scenedetect {
namespace {

// The converter may write a few bytes more than it should.
constexpr std::size_t kBufferSlack = 64;

constexpr WORD kYuy2Bits = 16;

} // namespace

DecodedReader::DecodedReader(std::unique_ptr<MediaInput> input, AVPacket& first, const DamageLog& damage,
                             int threads)
    : m_input(std::move(input)),
      m_clock(m_input->ClockSetup()),
      m_damage(damage),
      m_decoder(
          m_input->File(), threads, [this](AVPacket& packet) { return ReadPacket(packet); },
          [this] { ReportDamage(); }) {
    av_packet_move_ref(m_first.get(), &first);
    // The picture's true size and format are those of the first one that comes out.
    if (!Decode())
        throw HostError(m_input->Path() + (m_input->File().IsStopped() ? ": stopped before the first picture"
                                                                       : ": no picture can be decoded"));
    m_isFramePending = true;
    m_layout = std::make_unique<LumaLayout>(*m_frame);
    if (m_layout->Bytes() > std::numeric_limits<std::int32_t>::max())
        throw HostError(m_input->Path() + ": pictures are too large");
    m_format.fourcc = MAKEFOURCC('Y', 'U', 'Y', '2');
    m_format.width = m_layout->Width();
    m_format.height = m_layout->Height();
    m_format.bitCount = kYuy2Bits;
    m_format.imageBytes = static_cast<std::uint32_t>(m_layout->Bytes());
    m_format.frameDuration = FrameDurationOf(m_clock.Scale().rate);
    m_info = m_input->Info();
    m_info.delay = m_input->MicrosecondsIn(m_frame->best_effort_timestamp);
    m_damage.Begin();
}

std::string DecodedReader::Description() const {
    return m_input->FormatName() + ", decoded by " + m_decoder.Name();
}

bool DecodedReader::ReadPacket(AVPacket& packet) {
    if (m_first->size > 0) {
        av_packet_move_ref(&packet, m_first.get());
        return true;
    }
    if (m_input->ReadPacket(packet))
        return true;
    if (!m_input->BreakOffReason().empty()) {
        m_damage.Warn("breaks off: " + m_input->BreakOffReason());
        SetBrokenOff();
    }
    return false;
}

void DecodedReader::ReportDamage() {
    m_damage.Report("damaged picture data near frame " + std::to_string(m_lastFrame) + " left out");
}

bool DecodedReader::Decode() {
    return m_decoder.Next(*m_frame) && !m_input->File().IsStopped();
}

bool DecodedReader::Next(Picture& picture) {
    picture.Clear();
    while (std::exchange(m_isFramePending, false) || Decode()) {
        picture.place = m_clock.Next(m_frame->best_effort_timestamp, m_frame->pkt_pos);
        m_lastFrame = picture.place.frame;
        const bool isLaidOut =
            m_layout->LayOut(*m_frame, picture.OwnBuffer(m_layout->Bytes() + kBufferSlack));
        av_frame_unref(m_frame.get());
        if (!isLaidOut) {
            m_damage.Report("frame " + std::to_string(m_lastFrame) + " has a format that can't be read");
            continue;
        }
        picture.format = m_format;
        picture.HoldOwnBuffer(m_layout->Bytes());
        SetFraction(m_input->Fraction());
        return true;
    }
    m_damage.Summarize();
    return false;
}

} // namespace scenedetect
