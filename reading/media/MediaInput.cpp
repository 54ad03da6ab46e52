#include "reading/media/MediaInput.h"

#include "reading/base/HostError.h"
#include "reading/ffmpeg/FfmpegLog.h"
#include "reading/ffmpeg/Rational.h"
#include "reading/ffmpeg/Stamps.h"

extern "C" {
#include <libavutil/display.h>
#include <libavutil/mem.h>
}

#include <algorithm>
#include <cerrno>
#include <cmath>
#include <exception>
#include <utility>

namespace scenedetect {
namespace {

constexpr AVRational kFallbackRate{25, 1};
constexpr int kHighestGuess = 300; // of what no container tells

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

bool IsInterlaced(AVFieldOrder order) {
    return order != AV_FIELD_UNKNOWN && order != AV_FIELD_PROGRESSIVE;
}

FfmpegPtr<AVIOContext> BytesOf(StreamInput& stream) {
    constexpr int kBufferBytes = 1 << 15;
    auto* const buffer = static_cast<unsigned char*>(av_malloc(kBufferBytes));
    return OwnFfmpeg(avio_alloc_context(buffer, kBufferBytes, 0, &stream, ReadStream, nullptr,
                                        stream.IsFile() ? SeekStream : nullptr));
}

} // namespace

MediaInput::MediaInput(std::string path, const std::atomic<bool>* stop)
    : m_stop(stop), m_file(std::move(path), stop), m_size(SizeNow()) {}

MediaInput::MediaInput(std::shared_ptr<StreamInput> stream, const std::atomic<bool>& stop)
    : m_stop(&stop),
      m_stream(std::move(stream)),
      m_bytes(BytesOf(*m_stream)),
      m_file(m_stream->Path(), *m_bytes, &stop),
      m_size(SizeNow()) {}

std::unique_ptr<MediaInput> MediaInput::OpenAgain() const {
    if (m_stream)
        return nullptr;
    auto input = std::make_unique<MediaInput>(Path(), m_stop);
    input->FindVideo();
    input->TellPackets(m_part);
    return input;
}

std::int64_t MediaInput::SizeNow() const {
    return m_file.Context().pb ? avio_size(m_file.Context().pb) : 0;
}

double MediaInput::Fraction() const {
    AVIOContext* const bytes = m_file.Context().pb;
    if (m_size <= 0 || !bytes)
        return -1;
    return std::clamp(static_cast<double>(avio_tell(bytes)) / static_cast<double>(m_size), 0.0, 1.0);
}

void MediaInput::FindVideo() {
    m_file.FindVideo();
    AVStream* const video = &m_file.Video();
    m_file.ReadOnly({&video, 1});
}

MediaInfo MediaInput::Info() const {
    AVStream& video = Video();
    MediaInfo info;
    info.width = video.codecpar->width;
    info.height = video.codecpar->height;
    info.quarterTurns = QuarterTurns();
    const AVRational aspect = av_guess_sample_aspect_ratio(&m_file.Context(), &video, nullptr);
    if (IsKnown(aspect))
        info.pixelAspect = RatioOf(aspect);
    info.startTimecode = ParseSourceTimecode(m_file.Timecode(), RatioOf(ClockSetup().rate));
    for (const AVStream* stream : m_file.Streams()) {
        const AVCodecParameters& each = *stream->codecpar;
        if (each.codec_type == AVMEDIA_TYPE_AUDIO && !info.audio && each.sample_rate > 0)
            info.audio = AudioFormat{each.ch_layout.nb_channels, each.sample_rate};
    }
    return info;
}

std::int64_t MediaInput::MicrosecondsIn(std::int64_t stamp) const {
    const std::int64_t start = m_file.Context().start_time;
    const std::int64_t time = av_rescale_q(stamp, Video().time_base, {1, AV_TIME_BASE});
    return IsWild(stamp) || IsWild(start) || IsWild(time) ? 0 : std::max<std::int64_t>(time - start, 0);
}

bool MediaInput::SeekBefore(std::int64_t stamp) {
    return av_seek_frame(&m_file.Context(), Video().index, stamp, AVSEEK_FLAG_BACKWARD) >= 0;
}

bool MediaInput::SeekToByte(std::int64_t offset) {
    return av_seek_frame(&m_file.Context(), -1, offset, AVSEEK_FLAG_BYTE) >= 0;
}

int MediaInput::QuarterTurns() const {
    const auto* matrix = reinterpret_cast<const std::int32_t*>(
        av_stream_get_side_data(&Video(), AV_PKT_DATA_DISPLAYMATRIX, nullptr));
    if (!matrix)
        return 0;
    // The matrix tells degrees counterclockwise; not a number when it turns nothing.
    const double degrees = av_display_rotation_get(matrix);
    return std::isnan(degrees) ? 0 : static_cast<int>((std::lround(-degrees / 90) % 4 + 4) % 4);
}

AVRational MediaInput::PixelAspect(AVFrame& picture) const {
    return av_guess_sample_aspect_ratio(&m_file.Context(), &Video(), &picture);
}

FrameClock::Setup MediaInput::ClockSetup() const {
    FrameClock::Setup setup;
    setup.timeBase = Video().time_base;
    const AVRational average = Video().avg_frame_rate;
    setup.rate = m_file.GuessedRate();
    const bool isGuess = !IsKnown(average);
    // The library's guess may be no more than the time base.
    const bool isKnown = IsKnown(setup.rate) && !(isGuess && av_q2d(setup.rate) > kHighestGuess);
    if (!isKnown)
        setup.rate = isGuess ? kFallbackRate : average;
    // Where fields are counted, the rate is twice that of the pictures.
    if (IsInterlaced(Video().codecpar->field_order) && IsKnown(average) &&
        IsSameRate(RatioOf(av_mul_q(average, AVRational{2, 1})), RatioOf(setup.rate)))
        setup.rate = average;
    setup.constantRate =
        m_file.IsFormat("avi") || (isGuess ? isKnown : IsSameRate(RatioOf(average), RatioOf(setup.rate)));
    setup.stampsMayJump = m_file.StampsMayJump();
    return setup;
}

// Whether the stream is shorter than the container says, by more than rounding and reordering explain.
bool MediaInput::IsEndMissing() const {
    const AVStream& video = Video();
    // Of an AVI file without its index, the length of which is in frames, the libraries estimate the
    // duration.
    const std::int64_t announced =
        m_file.IsFormat("avi") ? std::max(video.duration, video.nb_frames) : video.duration;
    if (announced <= 0 || m_lastStamp == AV_NOPTS_VALUE)
        return false;
    const std::int64_t start = video.start_time != AV_NOPTS_VALUE ? video.start_time : 0;
    const std::int64_t missing = announced - (m_lastStamp - start);
    const AVRational rate = m_file.GuessedRate();
    const std::int64_t fewFrames = IsKnown(rate) ? av_rescale_q(5, av_inv_q(rate), video.time_base) : 0;
    return missing > std::max(fewFrames, announced / 50);
}

bool MediaInput::ReadPacket(AVPacket& packet) {
    for (;;) {
        const std::size_t errorsBefore = FormatErrorCount();
        const int read = m_file.Read(packet);
        if (read < 0) {
            if (read == AVERROR_EXIT)
                return false;
            if (FormatErrorCount() != errorsBefore)
                m_breakOffReason = LastFormatError();
            else if (read != AVERROR_EOF)
                m_breakOffReason = FfmpegErrorText(read);
            else if (IsEndMissing())
                m_breakOffReason = "the end that it announces is missing";
            return false;
        }
        if (packet.stream_index == Video().index && packet.size > 0) {
            if (packet.dts != AV_NOPTS_VALUE)
                m_lastStamp = std::max(m_lastStamp, packet.dts);
            if (m_part)
                m_part->NotePacket(packet.pos, (packet.flags & (AV_PKT_FLAG_KEY | AV_PKT_FLAG_DISCARD)) ==
                                                   AV_PKT_FLAG_KEY);
            return true;
        }
        av_packet_unref(&packet);
    }
}

} // namespace scenedetect
