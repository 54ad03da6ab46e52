#include "products/cutting/PacketClip.h"

#include "products/muxing/Mp4Edits.h"
#include "products/muxing/PcmPacket.h"
#include "products/muxing/VideoEncoder.h"

#include <algorithm>
#include <functional>
#include <utility>

namespace scenedetect {
namespace {

// No writer puts audio further after its pictures; a stream may also have ended.
constexpr std::int64_t kAudioDelaySeconds = 10;

FfmpegPtr<AVPacket> Share(const AVPacket& packet) {
    return OwnFfmpeg(av_packet_clone(&packet));
}

} // namespace

PacketClip::PacketClip(const WrittenClip& clip, Existing existing, const Container& container,
                       const PacketSource& source, const ClipSpan& span, const std::string& timecode,
                       std::unique_ptr<VideoEncoder> encoder)
    : m_clip(clip),
      m_source(source),
      m_span(span),
      m_delay(encoder ? 0 : DecodingDelay(source)),
      m_shownEnd(span.end),
      m_encoder(std::move(encoder)),
      m_file(clip.path, existing),
      m_muxer(m_file, container, source, timecode, m_encoder ? &m_encoder->Context() : nullptr),
      m_hasPassed(source.Streams().size(), false) {
    for (std::size_t i = 0; i < m_hasPassed.size(); ++i)
        m_hasPassed[i] = IsSubtitle(*source.Streams()[i]); // there may be no more of them
}

PacketClip::~PacketClip() = default;

void PacketClip::Offer(const AVPacket& packet, int stream) {
    if (stream == 0)
        return OfferVideo(packet);
    const AVStream& other = *m_source.Streams()[static_cast<std::size_t>(stream)];
    const AVRational videoTimeBase = m_source.Video().time_base;
    const auto stampOf = [&](std::int64_t time) {
        return time == INT64_MAX ? INT64_MAX : av_rescale_q(time, videoTimeBase, other.time_base);
    };
    const std::int64_t begin = stampOf(IsSubtitle(other) ? m_span.zero : m_span.audioBegin);
    const std::int64_t end = stampOf(m_span.audioEnd);
    if (PresentationTime(packet) >= end)
        m_hasPassed[static_cast<std::size_t>(stream)] = true;
    auto piece = Share(packet);
    if (IsSubtitle(other) ? CutSubtitle(*piece, begin, end)
                          : CutAudio(*piece, other, begin, end, m_clip.hidesOthers ? kDecodedBefore : 0))
        Write(std::move(piece), stream);
}

void PacketClip::OfferPicture(const AVFrame& picture, std::int64_t time) {
    if (time < m_span.begin || !m_span.IsBefore(time))
        return;
    ++m_clip.frames;
    m_encoder->Encode(picture, time - m_span.zero, [this](AVPacket& packet) { m_muxer.Write(packet, 0); });
}

void PacketClip::OfferVideo(const AVPacket& packet) {
    const std::int64_t time = PresentationTime(packet);
    // Pictures that follow the key frame but are presented before it need what the clip does not have. Their
    // places in the order of decoding must not stay empty, since some containers know no other order.
    if (time < m_span.begin) {
        if (m_clip.frames == 0 && m_held.size() == 1)
            m_held.front()->dts = packet.dts;
        return;
    }
    const bool isKeyFrame = m_clip.frames == 0 && m_held.empty();
    m_held.push_back(Share(packet));
    // At the earliest: rather one picture too many than one too few.
    const std::int64_t earliest = packet.pts != AV_NOPTS_VALUE ? packet.pts : packet.dts - m_delay;
    if (!isKeyFrame && m_span.IsBefore(earliest))
        WriteHeld();
}

void PacketClip::WriteHeld() {
    for (auto& each : std::exchange(m_held, {})) {
        ++m_clip.frames;
        if (const std::int64_t time = PresentationTime(*each); !m_span.IsBefore(time)) {
            ++m_clip.framesLate;
            m_shownEnd = std::min(m_shownEnd, time);
        }
        if (m_clip.frames == 1)
            m_firstDts = each->dts;
        else if (m_clip.hidesOthers && IsNoSeekPoint(each->dts))
            each->flags &= ~AV_PKT_FLAG_KEY;
        Write(std::move(each), 0);
    }
}

// Deliberate: where a clip hides pictures, not every key frame is marked as such. Not those that are decoded
// before the cut, since pictures shown before them need the one before; and not those in so much of the end
// as is hidden at the beginning, since GStreamer's demuxer, which counts that to the length of the movie,
// would stop at them.
bool PacketClip::IsNoSeekPoint(std::int64_t dts) const {
    constexpr std::int64_t kMargin = 8; // two frames
    return m_firstDts < m_span.zero &&
           (dts < m_span.zero ||
            dts - m_firstDts >= m_span.shownEnd - m_span.zero - kMargin * m_span.tolerance);
}

void PacketClip::Write(FfmpegPtr<AVPacket> packet, int stream) {
    const AVRational timeBase = m_source.Streams()[static_cast<std::size_t>(stream)]->time_base;
    const std::int64_t zero = av_rescale_q(m_span.zero, m_source.Video().time_base, timeBase);
    for (std::int64_t* stamp : {&packet->dts, &packet->pts})
        if (*stamp != AV_NOPTS_VALUE)
            *stamp -= zero;
    packet->flags &= ~AV_PKT_FLAG_DISCARD; // of the source's edit list
    m_muxer.Write(*packet, stream);
}

bool PacketClip::IsComplete(std::int64_t now) const {
    if (m_span.IsBefore(now - m_delay))
        return false;
    const std::int64_t delay = av_rescale_q(kAudioDelaySeconds, {1, 1}, m_source.Video().time_base);
    return now - m_span.end > delay ||
           std::all_of(m_hasPassed.begin() + 1, m_hasPassed.end(), std::identity());
}

WrittenClip PacketClip::Finish() {
    if (m_clip.frames == 0 && !m_held.empty()) {
        m_held.resize(1); // the key frame alone
        WriteHeld();
    }
    if (m_encoder)
        m_encoder->Finish([this](AVPacket& packet) { m_muxer.Write(packet, 0); });
    m_muxer.Finish();
    if (m_clip.hidesOthers && m_shownEnd != INT64_MAX)
        EndEditsAt(m_file, m_shownEnd - m_span.zero, m_source.Video().time_base);
    m_file.Commit();
    m_clip.bytes = m_muxer.Size();
    if (m_clip.framesLate != 0 && !m_clip.hidesOthers)
        m_clip.note += (m_clip.note.empty() ? "ends " : "; ends ") + FramesText(m_clip.framesLate) + " late";
    return m_clip;
}

} // namespace scenedetect
