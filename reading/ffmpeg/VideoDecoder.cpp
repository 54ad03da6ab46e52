#include "reading/ffmpeg/VideoDecoder.h"

#include "platform/UsableCores.h"
#include "reading/base/HostError.h"
#include "reading/ffmpeg/FfmpegLog.h"

extern "C" {
#include <libavutil/cpu.h>
}

#include <algorithm>
#include <system_error>
#include <utility>

namespace scenedetect {
namespace {

// Where pictures are made of others, errors add up, and more so the smaller they are.
constexpr int kHalvings = 2;
constexpr int kHalvingsOfIntra = 3;
constexpr std::size_t kPacketsAhead = 4;
// Of smaller pictures a thread that is woken for each takes longer than it saves.
constexpr std::int64_t kLeastPixelsAhead = std::int64_t{1280} * 720;

void TakeShortcuts(AVCodecContext& decoder, const AVCodec& codec) {
    if (codec.id == AV_CODEC_ID_H264 || codec.id == AV_CODEC_ID_HEVC)
        decoder.skip_loop_filter = AVDISCARD_ALL;
    const AVCodecDescriptor* const kind = avcodec_descriptor_get(codec.id);
    const bool isIntra = kind && (kind->props & AV_CODEC_PROP_INTRA_ONLY) != 0;
    const bool isLossless = // its decoder would refuse
        codec.id == AV_CODEC_ID_MJPEG && decoder.profile == FF_PROFILE_MJPEG_HUFFMAN_LOSSLESS;
    if (!isLossless)
        decoder.lowres = std::min<int>(codec.max_lowres, isIntra ? kHalvingsOfIntra : kHalvings);
}

FfmpegPtr<AVCodecContext> OpenDecoder(const MediaFile& file, const Decoding& decoding) {
    const AVCodecParameters& stream = *file.Video().codecpar;
    const AVCodec* codec = avcodec_find_decoder(stream.codec_id);
    if (!codec)
        throw HostError(file.Path() + ": no decoder for " + avcodec_get_name(stream.codec_id));
    auto decoder = OwnFfmpeg(avcodec_alloc_context3(codec));
    int result = avcodec_parameters_to_context(decoder.get(), &stream);
    decoder->pkt_timebase = file.Video().time_base;
    av_cpu_force_count(UsableCores()); // from which it chooses when told 0
    decoder->thread_count = decoding.threads;
    decoder->thread_type = FF_THREAD_FRAME | FF_THREAD_SLICE;
    if (decoding.isFast)
        TakeShortcuts(*decoder, *codec);
    if (result >= 0)
        result = avcodec_open2(decoder.get(), codec, nullptr);
    if (result < 0)
        throw HostError(file.Path() + ": the decoder for " + codec->name +
                        " cannot be opened: " + FfmpegErrorText(result));
    return decoder;
}

// Null stands for the end.
Pictures Decode(AVCodecContext& decoder, const AVPacket* packet) {
    Pictures pictures;
    if (avcodec_send_packet(&decoder, packet) < 0 && packet)
        pictures.emplace_back();
    for (;;) {
        auto picture = OwnFfmpeg(av_frame_alloc());
        const int received = avcodec_receive_frame(&decoder, picture.get());
        if (received == AVERROR(EAGAIN) || received == AVERROR_EOF)
            return pictures;
        if (received < 0)
            picture.reset();
        pictures.push_back(std::move(picture));
        if (received < 0 && packet) // it goes on with the next one
            return pictures;
    }
}

} // namespace

VideoDecoder::VideoDecoder(const MediaFile& file, const Decoding& decoding, Source source, Damaged damaged)
    : m_source(std::move(source)), m_damaged(std::move(damaged)), m_decoder(OpenDecoder(file, decoding)) {
    const bool isLarge = std::int64_t{m_decoder->width} * m_decoder->height >= kLeastPixelsAhead;
    const bool hasFrameThreads = (m_decoder->active_thread_type & FF_THREAD_FRAME) != 0;
    if (decoding.isAhead && isLarge && !hasFrameThreads && decoding.threads != 1 && UsableCores() > 1)
        StartAhead();
}

void VideoDecoder::StartAhead() {
    try {
        m_ahead.emplace([this](const AVPacket* packet) { return Decode(*m_decoder, packet); });
    } catch (const std::system_error&) {
        // Then pictures are decoded when they are asked for.
    }
}

std::string VideoDecoder::Shortcut() const {
    if (m_decoder->skip_loop_filter == AVDISCARD_ALL)
        return "without loop filter";
    return Halvings() == 0 ? "" : "at 1/" + std::to_string(1 << Halvings()) + " of width and height";
}

// Gets the pictures of one more packet; false when there are no more.
bool VideoDecoder::Feed() {
    while (!m_isDraining) {
        auto packet = OwnFfmpeg(av_packet_alloc());
        try {
            m_isDraining = !m_source(*packet);
        } catch (...) {
            m_error = std::current_exception();
            m_isDraining = true;
        }
        if (m_isDraining)
            packet.reset();
        if (!m_ahead) {
            m_pictures = Decode(*m_decoder, packet.get());
            return true;
        }
        m_ahead->Send(std::move(packet));
        if (m_ahead->OnTheirWay() == kPacketsAhead)
            break;
    }
    if (m_ahead && m_ahead->OnTheirWay() > 0) {
        m_pictures = m_ahead->Receive();
        return true;
    }
    if (m_error)
        std::rethrow_exception(std::exchange(m_error, {}));
    return false;
}

bool VideoDecoder::Next(AVFrame& picture) {
    do {
        while (!m_pictures.empty()) {
            const FfmpegPtr<AVFrame> next = std::move(m_pictures.front());
            m_pictures.pop_front();
            if (next) {
                av_frame_unref(&picture);
                av_frame_move_ref(&picture, next.get());
                return true;
            }
            if (m_damaged)
                m_damaged();
        }
    } while (Feed());
    return false;
}

void VideoDecoder::Flush() {
    while (m_ahead && m_ahead->OnTheirWay() > 0)
        m_pictures = m_ahead->Receive();
    m_pictures.clear();
    avcodec_flush_buffers(m_decoder.get());
    m_isDraining = false;
    m_error = {};
}

} // namespace scenedetect
