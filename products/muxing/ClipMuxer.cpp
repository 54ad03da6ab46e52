#include "products/muxing/ClipMuxer.h"

#include "products/muxing/PacketSource.h"
#include "reading/base/HostError.h"
#include "reading/ffmpeg/FfmpegLog.h"

extern "C" {
#include <libavutil/opt.h>
}

#include <algorithm>
#include <cstring>
#include <new>
#include <span>
#include <string_view>

namespace scenedetect {
namespace {

bool IsTagAllowed(const AVOutputFormat& format, const AVCodecParameters& codec) {
    unsigned tag = 0;
    return !format.codec_tag || av_codec_get_id(format.codec_tag, codec.codec_tag) == codec.codec_id ||
           av_codec_get_tag2(format.codec_tag, codec.codec_id, &tag) == 0;
}

// " (h264, flac)"
std::string CodecNames(const AVFormatContext& clip) {
    std::string names;
    for (const AVStream* stream : std::span(clip.streams, clip.nb_streams))
        names += (names.empty() ? " (" : ", ") + std::string(avcodec_get_name(stream->codecpar->codec_id));
    return names + ")";
}

bool NeedsPresentationTimes(const AVOutputFormat& format) {
    return (format.flags & AVFMT_NOTIMESTAMPS) == 0 && format.name != std::string_view("avi");
}

} // namespace

ClipMuxer::ClipMuxer(OutputFile& file, const Container& container, const PacketSource& source,
                     const std::string& timecode, const AVCodecContext* encoder)
    : m_file(file), m_container(container) {
    if (avformat_alloc_output_context2(&m_context, container.format, nullptr, nullptr) < 0)
        throw std::bad_alloc();
    try {
        for (const AVStream* stream : source.Streams())
            AddStream(*stream, source.Rate(), stream == &source.Video() ? encoder : nullptr);
        av_dict_copy(&m_context->metadata, source.Context().metadata, 0);
        // What is true of the source's file alone.
        for (const char* key : {"encoder", "major_brand", "minor_version", "compatible_brands", "timecode"})
            av_dict_set(&m_context->metadata, key, nullptr, 0);
        if (!timecode.empty())
            av_dict_set(&m_context->metadata, "timecode", timecode.c_str(), 0);
        Require(avio_open(&m_context->pb, ("file:" + file.WritingPath()).c_str(), AVIO_FLAG_WRITE));
        const std::size_t errorsBefore = FormatErrorCount();
        const int begun = WriteHeader();
        if (begun < 0 && m_context->pb->error >= 0)
            throw HostError(
                file.Path() + ": " + container.format->name + " refuses the streams" +
                CodecNames(*m_context) + ": " +
                (FormatErrorCount() != errorsBefore ? LastFormatError() : FfmpegErrorText(begun)) +
                Advice(container));
        Require(begun);
    } catch (...) {
        avio_closep(&m_context->pb);
        avformat_free_context(m_context);
        throw;
    }
}

ClipMuxer::~ClipMuxer() {
    avio_closep(&m_context->pb);
    avformat_free_context(m_context);
}

void ClipMuxer::AddStream(const AVStream& source, AVRational rate, const AVCodecContext* encoder) {
    AVStream* const stream = avformat_new_stream(m_context, nullptr);
    if (!stream || avcodec_parameters_copy(stream->codecpar, source.codecpar) < 0 ||
        av_dict_copy(&stream->metadata, source.metadata, 0) < 0)
        throw std::bad_alloc();
    if (encoder && avcodec_parameters_from_context(stream->codecpar, encoder) < 0)
        throw std::bad_alloc();
    if (!CanHold(m_container, *stream->codecpar))
        throw HostError(m_file.Path() + ": " + RefusalText(m_container, *stream->codecpar) +
                        Advice(m_container));
    av_dict_set(&stream->metadata, "timecode", nullptr, 0);
    if (encoder)
        av_dict_set(&stream->metadata, "encoder", nullptr, 0);
    if (encoder && encoder->codec_id == AV_CODEC_ID_HEVC && HasEdits(m_container))
        stream->codecpar->codec_tag = MKTAG('h', 'v', 'c', '1'); // which more players know
    if (!IsTagAllowed(*m_container.format, *stream->codecpar))
        stream->codecpar->codec_tag = 0;
    // Rotation, for one.
    for (int i = 0; i < source.nb_side_data; ++i) {
        const AVPacketSideData& data = source.side_data[i];
        const bool isOfBits = data.type == AV_PKT_DATA_CPB_PROPERTIES || data.type == AV_PKT_DATA_DOVI_CONF;
        if (encoder && isOfBits)
            continue;
        if (std::uint8_t* copy = av_stream_new_side_data(stream, data.type, data.size))
            std::memcpy(copy, data.data, data.size);
    }
    stream->disposition = source.disposition;
    // Muxers refuse a codec that says otherwise than its container, which players go by.
    if (source.sample_aspect_ratio.num != 0)
        stream->codecpar->sample_aspect_ratio = source.sample_aspect_ratio;
    stream->sample_aspect_ratio = stream->codecpar->sample_aspect_ratio;
    stream->time_base = encoder ? encoder->time_base : source.time_base;
    const AVRational packetTimeBase = stream->time_base;
    if (source.codecpar->codec_type == AVMEDIA_TYPE_VIDEO) {
        stream->avg_frame_rate = source.avg_frame_rate;
        stream->r_frame_rate = source.r_frame_rate;
        if (m_container.format->name == std::string_view("avi"))
            stream->time_base = av_inv_q(rate); // there frames are counted
    }
    m_tracks.push_back({packetTimeBase});
}

int ClipMuxer::WriteHeader() {
    int begun = avformat_init_output(m_context, nullptr);
    // Edits count in the time base of the movie: in milliseconds unless told, which cuts between no frames.
    if (begun >= 0 && HasEdits(m_container))
        begun =
            av_opt_set_int(m_context->priv_data, "movie_timescale", m_context->streams[0]->time_base.den, 0);
    return begun >= 0 ? avformat_write_header(m_context, nullptr) : begun;
}

void ClipMuxer::Fail(int code) const {
    constexpr int kMostErrno = 4095; // the libraries' own codes lie beyond
    if (m_context->pb && m_context->pb->error < 0)
        code = m_context->pb->error;
    if (-code <= kMostErrno && code != AVERROR(EINVAL))
        FailToWrite(m_file.Path(), -code);
    throw HostError(m_file.Path() + ": " + m_container.format->name + " refuses a packet of the source (" +
                    FfmpegErrorText(code) + ")" + Advice(m_container));
}

void ClipMuxer::Require(int code) const {
    if (code < 0)
        Fail(code);
}

void ClipMuxer::Write(AVPacket& packet, int stream) {
    const AVStream& target = *m_context->streams[stream];
    // Some muxers would make something up.
    if (packet.pts == AV_NOPTS_VALUE && NeedsPresentationTimes(*m_container.format))
        throw HostError(m_file.Path() +
                        ": the source has no presentation times (PTS) for its reordered pictures, which " +
                        m_container.format->name + " needs; --container avi needs none");
    Track& track = m_tracks[static_cast<std::size_t>(stream)];
    av_packet_rescale_ts(&packet, track.timeBase, target.time_base);
    if (packet.dts != AV_NOPTS_VALUE && packet.dts <= track.lastDts) {
        if (target.codecpar->codec_type == AVMEDIA_TYPE_AUDIO)
            return av_packet_unref(&packet);
        packet.dts = track.lastDts + 1;
        if (packet.pts != AV_NOPTS_VALUE)
            packet.pts = std::max(packet.pts, packet.dts);
    }
    track.lastDts = std::max(track.lastDts, packet.dts);
    packet.stream_index = stream;
    packet.pos = -1;
    Require(av_interleaved_write_frame(m_context, &packet));
    Require(m_context->pb->error); // some muxers do not look
}

void ClipMuxer::Finish() {
    Require(av_write_trailer(m_context));
    avio_flush(m_context->pb);
    Require(m_context->pb->error);
    m_size = avio_size(m_context->pb);
    if (const int closed = avio_closep(&m_context->pb); closed < 0)
        FailToWrite(m_file.Path(), -closed);
}

} // namespace scenedetect
