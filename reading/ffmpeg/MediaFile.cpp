#include "reading/ffmpeg/MediaFile.h"

#include "reading/base/HostError.h"
#include "reading/ffmpeg/FfmpegLog.h"

extern "C" {
#include <libavutil/avstring.h>
#include <libavutil/mem.h>
}

#include <algorithm>
#include <new>
#include <utility>

namespace scenedetect {
namespace {

int IsStopSet(void* stop) {
    return stop && *static_cast<const std::atomic<bool>*>(stop) ? 1 : 0;
}

bool IsVideoTrack(const AVStream* stream) {
    return stream->codecpar->codec_type == AVMEDIA_TYPE_VIDEO &&
           (stream->disposition & AV_DISPOSITION_ATTACHED_PIC) == 0;
}

const AVDictionaryEntry* FindTimecode(const AVDictionary* metadata) {
    return av_dict_get(metadata, "timecode", nullptr, 0);
}

} // namespace

// The prefix "file:" keeps names with a colon from being taken for addresses.
MediaFile::MediaFile(std::string path, const std::atomic<bool>* stop)
    : m_path(std::move(path)), m_stop(stop), m_errorsBefore(FormatErrorCount()) {
    Open(("file:" + m_path).c_str(), nullptr, nullptr);
}

MediaFile::MediaFile(std::string path, const FilePart& part, const char* demuxer)
    : m_path(std::move(path)), m_stop(nullptr), m_errorsBefore(FormatErrorCount()) {
    const std::string url = "subfile,,start," + std::to_string(part.begin) + ",end," +
                            std::to_string(part.end) + ",,:file:" + m_path;
    Open(url.c_str(), demuxer, nullptr);
}

MediaFile::MediaFile(std::string name, AVIOContext& bytes, const std::atomic<bool>* stop)
    : m_path(std::move(name)), m_stop(stop), m_errorsBefore(FormatErrorCount()) {
    Open("", nullptr, &bytes);
}

void MediaFile::Open(const char* url, const char* demuxer, AVIOContext* bytes) {
    AVFormatContext* context = avformat_alloc_context();
    if (!context)
        throw std::bad_alloc();
    context->pb = bytes;
    context->interrupt_callback = {IsStopSet, const_cast<std::atomic<bool>*>(m_stop)};
    context->protocol_whitelist = av_strdup("file,subfile");
    const AVInputFormat* const format = demuxer ? av_find_input_format(demuxer) : nullptr;
    // Where opening fails, the context is freed.
    if (const int opened = avformat_open_input(&context, url, format, nullptr); opened < 0)
        Fail(opened);
    m_context.reset(context);
}

void MediaFile::Fail(int code) const {
    const std::string detail = FormatErrorCount() != m_errorsBefore ? LastFormatError() : "";
    throw HostError(m_path + ": cannot be read: " + FfmpegErrorText(code) +
                    (detail.empty() ? "" : " (" + detail + ")"));
}

bool MediaFile::IsFormat(const char* name) const {
    return av_match_name(name, m_context->iformat->name) != 0;
}

bool MediaFile::StampsMayJump() const {
    return (m_context->iformat->flags & AVFMT_TS_DISCONT) != 0;
}

std::span<AVStream* const> MediaFile::Streams() const {
    return {m_context->streams, m_context->nb_streams};
}

void MediaFile::FindVideo() {
    if (const int found = avformat_find_stream_info(m_context.get(), nullptr); found < 0)
        Fail(found);
    const auto streams = Streams();
    const int best = av_find_best_stream(m_context.get(), AVMEDIA_TYPE_VIDEO, -1, -1, nullptr, 0);
    if (best >= 0 && IsVideoTrack(streams[static_cast<std::size_t>(best)]))
        m_video = streams[static_cast<std::size_t>(best)];
    else if (const auto first = std::ranges::find_if(streams, IsVideoTrack); first != streams.end())
        m_video = *first;
    // Text is no video, although there is a demuxer that draws it.
    if (!m_video || IsFormat("tty"))
        throw HostError(m_path + ": no video stream");
}

void MediaFile::ReadOnly(std::span<AVStream* const> streams) {
    for (AVStream* stream : Streams())
        stream->discard =
            std::ranges::find(streams, stream) != streams.end() ? AVDISCARD_DEFAULT : AVDISCARD_ALL;
}

AVRational MediaFile::GuessedRate() const {
    return av_guess_frame_rate(m_context.get(), m_video, nullptr);
}

std::string MediaFile::Timecode() const {
    const AVDictionaryEntry* entry = FindTimecode(m_video->metadata);
    if (!entry)
        entry = FindTimecode(m_context->metadata);
    for (const AVStream* stream : Streams())
        if (!entry)
            entry = FindTimecode(stream->metadata);
    return entry ? entry->value : "";
}

int MediaFile::Read(AVPacket& packet) {
    const int read = IsStopped() ? AVERROR_EXIT : av_read_frame(m_context.get(), &packet);
    if (IsStopped()) {
        av_packet_unref(&packet); // reading was cut short, and so may the packet be
        return AVERROR_EXIT;
    }
    if (read >= 0)
        return read;
    // Demuxers tend to take an error of the device for the end.
    const int device = m_context->pb ? m_context->pb->error : 0;
    if (device < 0 && device != AVERROR_EOF)
        Fail(device);
    if (read != AVERROR_EOF && read != AVERROR_INVALIDDATA)
        Fail(read);
    return read;
}

} // namespace scenedetect
