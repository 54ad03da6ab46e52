#include "reading/media/MediaInput.h"

#include "reading/base/HostError.h"
#include "reading/ffmpeg/FfmpegLog.h"

extern "C" {
#include <libavcodec/avcodec.h>
#include <libavutil/display.h>
#include <libavutil/mem.h>
}

#include <algorithm>
#include <cerrno>
#include <cmath>
#include <cstdio>
#include <exception>
#include <new>
#include <string_view>
#include <utility>

namespace scenedetect {
namespace {

constexpr AVRational kFallbackRate{25, 1};
constexpr int kHighestGuess = 300; // of what no container tells

int IsStopSet(void* stop) {
    return *static_cast<const std::atomic<bool>*>(stop) ? 1 : 0;
}

// Exceptions must not pass through the library; it learns of them as errors of the device.
int ReadStream(void* stream, std::uint8_t* target, int bytes) {
    try {
        auto& input = *static_cast<StreamInput*>(stream);
        const std::size_t count = input.ReadAtLeast({target, static_cast<std::size_t>(bytes)}, 1);
        if (input.IsStopped())
            return AVERROR_EXIT;
        return count == 0 ? AVERROR_EOF : static_cast<int>(count);
    } catch (const std::exception&) {
        return AVERROR(EIO);
    }
}

std::int64_t SeekStream(void* stream, std::int64_t offset, int whence) {
    auto& input = *static_cast<StreamInput*>(stream);
    if ((whence & AVSEEK_SIZE) != 0)
        return input.Size();
    const int from = whence & ~AVSEEK_FORCE;
    const std::int64_t target = offset + (from == SEEK_CUR   ? input.Position()
                                          : from == SEEK_END ? input.Size()
                                                             : 0);
    if (target < 0)
        return AVERROR(EINVAL);
    try {
        input.GoTo(target);
    } catch (const std::exception&) {
        return AVERROR(EIO);
    }
    return target;
}

bool IsVideoTrack(const AVStream& stream) {
    return stream.codecpar->codec_type == AVMEDIA_TYPE_VIDEO &&
           (stream.disposition & AV_DISPOSITION_ATTACHED_PIC) == 0;
}

bool IsKnown(AVRational rate) {
    return rate.num > 0 && rate.den > 0;
}

bool AreClose(AVRational a, AVRational b) {
    constexpr double kTolerance = 1e-3; // of containers with coarse stamps
    return IsKnown(a) && IsKnown(b) && std::abs(av_q2d(a) / av_q2d(b) - 1) < kTolerance;
}

bool IsInterlaced(AVFieldOrder order) {
    return order != AV_FIELD_UNKNOWN && order != AV_FIELD_PROGRESSIVE;
}

} // namespace

MediaInput::MediaInput(std::string path, const std::atomic<bool>& stop)
    : m_path(std::move(path)), m_stop(stop) {
    // The prefix keeps names with a colon from being taken for addresses.
    Open(("file:" + m_path).c_str());
}

MediaInput::MediaInput(std::shared_ptr<StreamInput> stream, const std::atomic<bool>& stop)
    : m_path(stream->Path()), m_stop(stop), m_stream(std::move(stream)) {
    constexpr int kBufferBytes = 1 << 15;
    auto* const buffer = static_cast<unsigned char*>(av_malloc(kBufferBytes));
    m_reading = OwnFfmpeg(avio_alloc_context(buffer, kBufferBytes, 0, m_stream.get(), ReadStream, nullptr,
                                             m_stream->IsFile() ? SeekStream : nullptr));
    Open("");
}

void MediaInput::Open(const char* url) {
    m_context = avformat_alloc_context();
    if (!m_context)
        throw std::bad_alloc();
    m_context->pb = m_reading.get();
    m_context->interrupt_callback = {IsStopSet, const_cast<std::atomic<bool>*>(&m_stop)};
    // A play list must not make the program open anything but files.
    m_context->protocol_whitelist = av_strdup("file,pipe");
    const int opened = avformat_open_input(&m_context, url, nullptr, nullptr);
    if (opened < 0)
        Fail(opened);
    m_size = m_context->pb ? avio_size(m_context->pb) : 0;
}

MediaInput::~MediaInput() {
    avformat_close_input(&m_context);
}

void MediaInput::Fail(int code) const {
    const std::string detail = LastDemuxerError();
    throw HostError(m_path + ": cannot be read: " + FfmpegErrorText(code) +
                    (detail.empty() ? "" : " (" + detail + ")"));
}

double MediaInput::Fraction() const {
    if (m_size <= 0 || !m_context->pb)
        return -1;
    return std::clamp(static_cast<double>(avio_tell(m_context->pb)) / static_cast<double>(m_size), 0.0, 1.0);
}

std::string MediaInput::FormatName() const {
    return m_context->iformat->name;
}

bool MediaInput::IsRawDv() const {
    return m_context->iformat->name == std::string_view("dv");
}

bool MediaInput::IsAvi() const {
    return m_context->iformat->name == std::string_view("avi");
}

void MediaInput::FindVideo() {
    const int found = avformat_find_stream_info(m_context, nullptr);
    if (found < 0)
        Fail(found);
    // Text is no video, although there is a reader that draws it.
    const bool isText = m_context->iformat->name == std::string_view("tty");
    const int best = av_find_best_stream(m_context, AVMEDIA_TYPE_VIDEO, -1, -1, nullptr, 0);
    const std::span streams(m_context->streams, m_context->nb_streams);
    if (best >= 0 && IsVideoTrack(*streams[static_cast<std::size_t>(best)]))
        m_video = streams[static_cast<std::size_t>(best)];
    for (AVStream* stream : streams)
        if (!m_video && IsVideoTrack(*stream))
            m_video = stream;
    if (!m_video || isText)
        throw HostError(m_path + ": no video stream");
    for (AVStream* stream : streams)
        stream->discard = stream == m_video ? AVDISCARD_DEFAULT : AVDISCARD_ALL;
}

MediaInfo MediaInput::Info() const {
    const AVCodecParameters& video = *m_video->codecpar;
    MediaInfo info;
    info.width = video.width;
    info.height = video.height;
    const AVRational aspect = av_guess_sample_aspect_ratio(m_context, m_video, nullptr);
    if (IsKnown(aspect))
        info.pixelAspect = {aspect.num, aspect.den};
    const Ratio rate{ClockSetup().rate.num, ClockSetup().rate.den};
    const auto findTimecode = [&](const AVDictionary* metadata) {
        const AVDictionaryEntry* entry = av_dict_get(metadata, "timecode", nullptr, 0);
        if (entry && !info.startTimecode)
            info.startTimecode = ParseSourceTimecode(entry->value, rate);
    };
    findTimecode(m_video->metadata);
    findTimecode(m_context->metadata);
    for (const AVStream* stream : std::span(m_context->streams, m_context->nb_streams)) {
        findTimecode(stream->metadata);
        const AVCodecParameters& each = *stream->codecpar;
        if (each.codec_type == AVMEDIA_TYPE_AUDIO && !info.audio && each.sample_rate > 0)
            info.audio = AudioFormat{each.ch_layout.nb_channels, each.sample_rate};
    }
    return info;
}

FfmpegPtr<AVCodecContext> MediaInput::OpenDecoder(int threads) const {
    const AVCodecParameters& stream = *m_video->codecpar;
    const AVCodec* codec = avcodec_find_decoder(stream.codec_id);
    if (!codec)
        throw HostError(m_path + ": no decoder for " + avcodec_get_name(stream.codec_id));
    auto decoder = OwnFfmpeg(avcodec_alloc_context3(codec));
    int result = avcodec_parameters_to_context(decoder.get(), &stream);
    decoder->pkt_timebase = m_video->time_base;
    decoder->thread_count = threads;
    decoder->thread_type = FF_THREAD_FRAME | FF_THREAD_SLICE;
    if (result >= 0)
        result = avcodec_open2(decoder.get(), codec, nullptr);
    if (result < 0)
        throw HostError(m_path + ": the decoder for " + codec->name +
                        " cannot be opened: " + FfmpegErrorText(result));
    return decoder;
}

bool MediaInput::SeekBefore(std::int64_t stamp) {
    return av_seek_frame(m_context, m_video->index, stamp, AVSEEK_FLAG_BACKWARD) >= 0;
}

bool MediaInput::SeekToByte(std::int64_t offset) {
    return av_seek_frame(m_context, -1, offset, AVSEEK_FLAG_BYTE) >= 0;
}

bool MediaInput::StampsMayJump() const {
    return (m_context->iformat->flags & AVFMT_TS_DISCONT) != 0;
}

int MediaInput::QuarterTurns() const {
    const auto* matrix = reinterpret_cast<const std::int32_t*>(
        av_stream_get_side_data(m_video, AV_PKT_DATA_DISPLAYMATRIX, nullptr));
    if (!matrix)
        return 0;
    // The matrix tells degrees counterclockwise; not a number when it turns nothing.
    const double degrees = av_display_rotation_get(matrix);
    return std::isnan(degrees) ? 0 : static_cast<int>((std::lround(-degrees / 90) % 4 + 4) % 4);
}

AVRational MediaInput::PixelAspect(AVFrame& picture) const {
    return av_guess_sample_aspect_ratio(m_context, m_video, &picture);
}

FrameClock::Setup MediaInput::ClockSetup() const {
    FrameClock::Setup setup;
    setup.stampUnit = m_video->time_base;
    const AVRational average = m_video->avg_frame_rate;
    setup.rate = av_guess_frame_rate(m_context, m_video, nullptr);
    const bool isGuess = !IsKnown(average);
    // The library's guess may be no more than the unit of the stamps.
    const bool isKnown = IsKnown(setup.rate) && !(isGuess && av_q2d(setup.rate) > kHighestGuess);
    if (!isKnown)
        setup.rate = isGuess ? kFallbackRate : average;
    // Where fields are counted, the rate is twice that of the pictures.
    if (IsInterlaced(m_video->codecpar->field_order) && IsKnown(average) &&
        AreClose(av_mul_q(average, AVRational{2, 1}), setup.rate))
        setup.rate = average;
    setup.constantRate = IsAvi() || (isGuess ? isKnown : AreClose(average, setup.rate));
    setup.stampsMayJump = StampsMayJump();
    return setup;
}

// Whether the stream is shorter than the container says, by more than rounding and reordering explain.
bool MediaInput::IsEndMissing() const {
    if (m_video->duration <= 0 || m_lastStamp == AV_NOPTS_VALUE)
        return false;
    const std::int64_t start = m_video->start_time != AV_NOPTS_VALUE ? m_video->start_time : 0;
    const std::int64_t missing = m_video->duration - (m_lastStamp - start);
    const AVRational rate = av_guess_frame_rate(m_context, m_video, nullptr);
    const std::int64_t fewFrames = IsKnown(rate) ? av_rescale_q(5, av_inv_q(rate), m_video->time_base) : 0;
    return missing > std::max(fewFrames, m_video->duration / 50);
}

bool MediaInput::ReadPacket(AVPacket& packet) {
    for (;;) {
        const std::size_t errorsBefore = DemuxerErrorCount();
        const int read = av_read_frame(m_context, &packet);
        if (m_stop) {
            av_packet_unref(&packet); // reading was cut short, and so may the packet be
            return false;
        }
        if (read < 0) {
            // Demuxers tend to take an error of the device for the end.
            const int device = m_context->pb ? m_context->pb->error : 0;
            if (device < 0 && device != AVERROR_EOF)
                Fail(device);
            if (read != AVERROR_EOF && read != AVERROR_INVALIDDATA)
                Fail(read);
            if (DemuxerErrorCount() != errorsBefore)
                m_breakOffReason = LastDemuxerError();
            else if (read != AVERROR_EOF)
                m_breakOffReason = FfmpegErrorText(read);
            else if (IsEndMissing())
                m_breakOffReason = "the end that it announces is missing";
            return false;
        }
        if (packet.stream_index == m_video->index && packet.size > 0) {
            if (packet.dts != AV_NOPTS_VALUE)
                m_lastStamp = std::max(m_lastStamp, packet.dts);
            return true;
        }
        av_packet_unref(&packet);
    }
}

} // namespace scenedetect
