#include "reading/media/DecodedReader.h"

#include "reading/base/HostError.h"
#include "reading/media/SkipAhead.h"

#include <limits>
#include <utility>

namespace scenedetect {
namespace {

constexpr WORD kYuy2Bits = 16;

PacketQueue QueueOf(AVPacket& first) {
    PacketQueue packets;
    packets.push_back(OwnFfmpeg(av_packet_alloc()));
    av_packet_move_ref(packets.back().get(), &first);
    return packets;
}

} // namespace

DecodedReader::DecodedReader(std::unique_ptr<MediaInput> input, AVPacket& first, const DamageLog& damage,
                             const Decoding& decoding)
    : m_decoding(decoding),
      m_damage(damage),
      m_stream(std::make_unique<DecodedStream>(std::move(input), QueueOf(first), decoding,
                                               [this] { ReportDamage(); })),
      m_clock(Input().ClockSetup()) {
    // The picture's true size and format are those of the first one that comes out.
    if (!m_stream->Next(*m_frame))
        throw HostError(Input().Path() + (Input().File().IsStopped() ? ": stopped before the first picture"
                                                                     : ": no picture can be decoded"));
    m_isFramePending = true;
    const AVCodecParameters& announced = *Input().Video().codecpar;
    m_layout = std::make_unique<LumaLayout>(*m_frame, m_stream->Decoder().Halvings(),
                                            PictureSize{announced.width, announced.height});
    const std::int64_t bytes = std::int64_t{m_layout->Width()} * m_layout->Height() * kYuy2Bits / 8;
    if (bytes > std::numeric_limits<std::int32_t>::max())
        throw HostError(Input().Path() + ": pictures are too large");
    m_format.fourcc = MAKEFOURCC('Y', 'U', 'Y', '2');
    m_format.width = m_layout->Width();
    m_format.height = m_layout->Height();
    m_format.bitCount = kYuy2Bits;
    m_format.imageBytes = static_cast<std::uint32_t>(bytes);
    m_format.frameDuration = FrameDurationOf(m_clock.Scale().rate);
    m_info = Input().Info();
    m_info.delay = Input().MicrosecondsIn(m_frame->best_effort_timestamp);
    m_damage.Begin();
}

std::string DecodedReader::Description() const {
    const std::string shortcut = Shortcut();
    return Input().FormatName() + ", decoded by " + m_stream->Decoder().Name() +
           (shortcut.empty() ? "" : " " + shortcut);
}

void DecodedReader::ReportDamage() {
    m_damage.Report("damaged picture data near frame " + std::to_string(m_lastFrame) + " left out");
}

bool DecodedReader::Next(Picture& picture) {
    picture.Clear();
    while (std::exchange(m_isFramePending, false) || m_stream->Next(*m_frame)) {
        m_lastStamp = m_frame->best_effort_timestamp;
        picture.place = m_clock.Next(m_lastStamp, m_frame->pkt_pos);
        m_lastFrame = picture.place.frame;
        const bool isHeld = m_layout->Hold(*m_frame, picture);
        av_frame_unref(m_frame.get());
        if (!isHeld) {
            m_damage.Report("frame " + std::to_string(m_lastFrame) + " has a format that can't be read");
            continue;
        }
        picture.format = m_format;
        SetFraction(Input().Fraction());
        return true;
    }
    if (!Input().BreakOffReason().empty()) {
        m_damage.Warn("breaks off: " + Input().BreakOffReason());
        SetBrokenOff();
    }
    m_damage.Summarize();
    return false;
}

std::int64_t DecodedReader::PassOver(const IsWanted& isWanted) {
    auto again = Input().OpenAgain();
    if (!again)
        return 0;
    auto skipped =
        SkipAhead(std::move(again), m_clock, m_lastStamp, isWanted, m_decoding, [this] { ReportDamage(); });
    if (!skipped)
        return 0;
    m_stream = std::move(skipped->stream);
    m_clock = skipped->clock;
    m_isFramePending = skipped->picture != nullptr;
    if (m_isFramePending)
        m_frame = std::move(skipped->picture);
    return skipped->count;
}

} // namespace scenedetect
