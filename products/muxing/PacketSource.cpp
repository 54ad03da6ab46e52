#include "products/muxing/PacketSource.h"

#include "reading/ffmpeg/Rational.h"

extern "C" {
#include <libavutil/timecode.h>
}

#include <algorithm>
#include <array>
#include <iterator>
#include <utility>

namespace scenedetect {

PacketSource::PacketSource(MediaFile file) : m_file(std::move(file)), m_streams(FindStreams(m_file)) {
    // AVI has no PTS. The libraries find them where no pictures but the usual B frames are reordered.
    if (Video().codecpar->video_delay <= 1)
        Context().flags |= AVFMT_FLAG_GENPTS;
    TakeStreams();
}

void PacketSource::TakeStreams() {
    m_file.ReadOnly(m_streams);
    m_stamps.emplace(m_streams, Rate(), m_file.StampsMayJump());
}

void PacketSource::KeepWhatFits(const Container& container) {
    std::erase_if(m_streams, [&container](const AVStream* stream) {
        return IsSubtitle(*stream) && !CanHold(container, *stream->codecpar);
    });
    TakeStreams();
}

std::vector<AVStream*> PacketSource::FindStreams(MediaFile& file) {
    file.FindVideo();
    std::vector<AVStream*> streams{&file.Video()};
    std::ranges::copy_if(file.Streams(), std::back_inserter(streams), [](const AVStream* stream) {
        // Damage makes streams up, of which nothing is known.
        return stream->codecpar->codec_type == AVMEDIA_TYPE_AUDIO && stream->codecpar->sample_rate > 0;
    });
    std::ranges::copy_if(file.Streams(), std::back_inserter(streams), [](const AVStream* stream) {
        return IsSubtitle(*stream) && stream->codecpar->codec_id != AV_CODEC_ID_NONE;
    });
    return streams;
}

AVRational PacketSource::Rate() const {
    const AVRational rate = m_file.GuessedRate();
    return IsKnown(rate) ? rate : AVRational{25, 1};
}

std::string PacketSource::TimecodeAt(std::int64_t frame) const {
    AVTimecode timecode;
    const std::string first = Timecode();
    if (first.empty() || av_timecode_init_from_string(&timecode, Rate(), first.c_str(), nullptr) < 0)
        return "";
    std::array<char, AV_TIMECODE_STR_SIZE> text{};
    return av_timecode_make_string(&timecode, text.data(), static_cast<int>(frame));
}

int PacketSource::Read(AVPacket& packet) {
    while (m_file.Read(packet) >= 0) {
        const auto stream = std::ranges::find(m_streams, packet.stream_index, &AVStream::index);
        if (stream == m_streams.end() || packet.size == 0) {
            av_packet_unref(&packet);
            continue;
        }
        const auto place = static_cast<int>(stream - m_streams.begin());
        m_stamps->Correct(packet, place);
        return place;
    }
    return -1;
}

} // namespace scenedetect
