#include "products/muxing/PacketStamps.h"

#include "reading/ffmpeg/Stamps.h"

extern "C" {
#include <libavutil/mathematics.h>
}

#include <algorithm>
#include <cstdlib>

namespace scenedetect {
namespace {

// Keeps sums of a few stamps from overflowing, whatever the container says.
std::int64_t InRange(std::int64_t stamp) {
    return std::clamp(stamp, -kFarthestStamp, kFarthestStamp);
}

bool IsJump(std::int64_t ahead, AVRational timeBase) {
    const std::int64_t second = av_rescale_q(1, {1, 1}, timeBase);
    return ahead > kJumpAheadSeconds * second || ahead < -kJumpBackSeconds * second;
}

} // namespace

PacketStamps::PacketStamps(std::span<AVStream* const> streams, AVRational rate, bool mayJump)
    : m_mayJump(mayJump) {
    for (const AVStream* stream : streams)
        m_tracks.push_back(
            {stream->time_base, stream->codecpar->video_delay,
             m_tracks.empty() ? InRange(av_rescale_q(1, av_inv_q(rate), stream->time_base)) : 0});
}

// Some containers have no decoding times, and FFmpeg's libraries find those of the first packets too late.
// Bare streams have no times at all.
void PacketStamps::FillIn(AVPacket& packet, const Track& video) {
    if (packet.dts != AV_NOPTS_VALUE)
        return;
    const bool isFirst = video.expected == AV_NOPTS_VALUE;
    if (packet.pts != AV_NOPTS_VALUE)
        packet.dts =
            isFirst ? InRange(packet.pts - video.delay * video.frame) : std::min(packet.pts, video.expected);
    else
        packet.dts = isFirst ? 0 : video.expected;
    if (packet.pts == AV_NOPTS_VALUE && video.delay == 0)
        packet.pts = packet.dts;
}

std::int64_t PacketStamps::OffsetFor(const Track& track, std::int64_t stamp, bool isVideo) {
    const AVRational videoTimeBase = m_tracks.front().timeBase;
    const auto ahead = [&](std::int64_t offset) {
        return stamp + InRange(av_rescale_q(offset, videoTimeBase, track.timeBase)) - track.expected;
    };
    if (track.expected == AV_NOPTS_VALUE)
        return InRange(av_rescale_q(m_offset, videoTimeBase, track.timeBase));
    if (isVideo) {
        if (IsJump(ahead(m_offset), track.timeBase)) {
            m_offsetBefore = m_offset;
            m_offset = track.expected - stamp;
        }
        return m_offset;
    }
    const bool isNew = std::abs(ahead(m_offset)) <= std::abs(ahead(m_offsetBefore));
    const std::int64_t nearest = isNew ? m_offset : m_offsetBefore;
    return IsJump(ahead(nearest), track.timeBase)
               ? track.expected - stamp
               : InRange(av_rescale_q(nearest, videoTimeBase, track.timeBase));
}

void PacketStamps::Correct(AVPacket& packet, int stream) {
    Track& track = m_tracks[static_cast<std::size_t>(stream)];
    for (std::int64_t* each : {&packet.dts, &packet.pts})
        if (IsWild(*each))
            *each = AV_NOPTS_VALUE;
    std::int64_t stamp = packet.dts != AV_NOPTS_VALUE ? packet.dts : packet.pts;
    if (m_mayJump && stamp != AV_NOPTS_VALUE) {
        const std::int64_t offset = OffsetFor(track, stamp, stream == 0);
        stamp += offset;
        for (std::int64_t* each : {&packet.dts, &packet.pts})
            if (*each != AV_NOPTS_VALUE)
                *each = InRange(*each + offset);
    }
    if (stream == 0) {
        FillIn(packet, track);
        stamp = packet.dts;
    }
    if (stamp != AV_NOPTS_VALUE)
        track.expected = InRange(stamp + std::clamp(packet.duration, track.frame, kFarthestStamp));
}

} // namespace scenedetect
