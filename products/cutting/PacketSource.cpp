#include "products/cutting/PacketSource.h"

#include "reading/base/HostError.h"

extern "C" {
#include <libavutil/mem.h>
}

#include <algorithm>
#include <array>
#include <new>
#include <utility>

namespace scenedetect {
namespace {

int IsStopSet(void* stop) {
    return *static_cast<const std::atomic<bool>*>(stop) ? 1 : 0;
}

bool IsKnown(AVRational rate) {
    return rate.num > 0 && rate.den > 0;
}

} // namespace

PacketSource::PacketSource(std::string path, const std::atomic<bool>& stop, const char* format)
    : m_path(std::move(path)), m_stop(stop), m_context(avformat_alloc_context()) {
    if (!m_context)
        throw std::bad_alloc();
    m_context->interrupt_callback = {IsStopSet, const_cast<std::atomic<bool>*>(&m_stop)};
    // A play list must not make the program open anything but files.
    m_context->protocol_whitelist = av_strdup("file");
    // The prefix keeps names with a colon from being taken for addresses. Where opening fails, the context is
    // gone.
    const AVInputFormat* demuxer = format ? av_find_input_format(format) : nullptr;
    if (const int opened = avformat_open_input(&m_context, ("file:" + m_path).c_str(), demuxer, nullptr);
        opened < 0)
        Fail(opened);
    try {
        FindStreams();
    } catch (...) {
        avformat_close_input(&m_context);
        throw;
    }
}

PacketSource::~PacketSource() {
    avformat_close_input(&m_context);
}

void PacketSource::Fail(int code) {
    std::array<char, AV_ERROR_MAX_STRING_SIZE> text{};
    av_strerror(code, text.data(), text.size());
    throw HostError(m_path + ": cannot be read: " + text.data());
}

void PacketSource::FindStreams() {
    if (const int found = avformat_find_stream_info(m_context, nullptr); found < 0)
        Fail(found);
    const std::span streams(m_context->streams, m_context->nb_streams);
    const auto isVideo = [](const AVStream* stream) {
        return stream->codecpar->codec_type == AVMEDIA_TYPE_VIDEO &&
               (stream->disposition & AV_DISPOSITION_ATTACHED_PIC) == 0;
    };
    // The same that the pictures were read from.
    const int best = av_find_best_stream(m_context, AVMEDIA_TYPE_VIDEO, -1, -1, nullptr, 0);
    if (best >= 0 && isVideo(streams[static_cast<std::size_t>(best)]))
        m_streams.push_back(streams[static_cast<std::size_t>(best)]);
    else if (const auto first = std::ranges::find_if(streams, isVideo); first != streams.end())
        m_streams.push_back(*first);
    else
        throw HostError(m_path + ": no video stream");
    for (AVStream* stream : streams)
        if (stream->codecpar->codec_type == AVMEDIA_TYPE_AUDIO)
            m_streams.push_back(stream);
    for (AVStream* stream : streams)
        if (std::ranges::find(m_streams, stream) == m_streams.end())
            stream->discard = AVDISCARD_ALL;
    // AVI has no times of showing. The libraries find them where no pictures but the usual B frames are
    // reordered.
    if (Video().codecpar->video_delay <= 1)
        m_context->flags |= AVFMT_FLAG_GENPTS;
    m_stamps.emplace(m_streams, Rate(), (m_context->iformat->flags & AVFMT_TS_DISCONT) != 0);
}

AVRational PacketSource::Rate() const {
    const AVRational rate = av_guess_frame_rate(m_context, &Video(), nullptr);
    return IsKnown(rate) ? rate : AVRational{25, 1};
}

std::string PacketSource::Timecode() const {
    const auto find = [](const AVDictionary* metadata) {
        return av_dict_get(metadata, "timecode", nullptr, 0);
    };
    const AVDictionaryEntry* entry = find(Video().metadata);
    if (!entry)
        entry = find(m_context->metadata);
    for (const AVStream* stream : std::span(m_context->streams, m_context->nb_streams))
        if (!entry)
            entry = find(stream->metadata);
    return entry ? entry->value : "";
}

int PacketSource::Read(AVPacket& packet) {
    for (;;) {
        const int read = m_stop ? AVERROR_EXIT : av_read_frame(m_context, &packet);
        if (m_stop)
            av_packet_unref(&packet); // it may be cut short
        if (m_stop)
            return -1;
        if (read < 0) {
            const int device = m_context->pb ? m_context->pb->error : 0;
            if (device < 0 && device != AVERROR_EOF)
                Fail(device);
            return -1;
        }
        const auto stream = std::ranges::find(m_streams, packet.stream_index, &AVStream::index);
        if (stream == m_streams.end() || packet.size == 0) {
            av_packet_unref(&packet);
            continue;
        }
        const auto place = static_cast<int>(stream - m_streams.begin());
        m_stamps->Correct(packet, place);
        return place;
    }
}

} // namespace scenedetect
