#include "reading/ffmpeg/VideoDecoder.h"

#include "platform/UsableCores.h"
#include "reading/base/HostError.h"
#include "reading/ffmpeg/FfmpegLog.h"

extern "C" {
#include <libavutil/cpu.h>
}

#include <algorithm>
#include <utility>

namespace scenedetect {
namespace {

// Where pictures are made of others, errors add up, and more so the smaller they are.
constexpr int kHalvings = 2;
constexpr int kHalvingsOfIntra = 3;

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

} // namespace

VideoDecoder::VideoDecoder(const MediaFile& file, const Decoding& decoding, Source source, Damaged damaged)
    : m_source(std::move(source)), m_damaged(std::move(damaged)), m_decoder(OpenDecoder(file, decoding)) {}

std::string VideoDecoder::Shortcut() const {
    if (m_decoder->skip_loop_filter == AVDISCARD_ALL)
        return "without loop filter";
    return Halvings() == 0 ? "" : "at 1/" + std::to_string(1 << Halvings()) + " of width and height";
}

// Hands the decoder the next packet, or tells it that there are no more.
void VideoDecoder::Feed() {
    m_isDraining = !m_source(*m_packet);
    if (avcodec_send_packet(m_decoder.get(), m_isDraining ? nullptr : m_packet.get()) < 0 && !m_isDraining)
        TellDamage();
    av_packet_unref(m_packet.get());
}

bool VideoDecoder::Next(AVFrame& picture) {
    for (;;) {
        const int received = avcodec_receive_frame(m_decoder.get(), &picture);
        if (received == 0)
            return true;
        if (received == AVERROR_EOF)
            return false;
        if (received != AVERROR(EAGAIN))
            TellDamage();
        else if (m_isDraining) // more packets are of no use
            return false;
        if (!m_isDraining)
            Feed();
    }
}

void VideoDecoder::Flush() {
    avcodec_flush_buffers(m_decoder.get());
    m_isDraining = false;
}

} // namespace scenedetect
