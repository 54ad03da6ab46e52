#include "products/muxing/VideoEncoder.h"

#include "products/muxing/Container.h"
#include "products/muxing/EncodeOptions.h"
#include "products/muxing/PacketSource.h"
#include "reading/base/HostError.h"
#include "reading/ffmpeg/FfmpegLog.h"

extern "C" {
#include <libavutil/mathematics.h>
#include <libavutil/pixdesc.h>
#include <libswscale/swscale.h>
}

#include <algorithm>
#include <string_view>
#include <utility>

namespace scenedetect {
namespace {

AVPixelFormat NearestFormat(const AVCodec& codec, AVPixelFormat wanted) {
    return codec.pix_fmts ? avcodec_find_best_pix_fmt_of_list(codec.pix_fmts, wanted, 1, nullptr) : wanted;
}

bool IsRgb(AVPixelFormat format) {
    const AVPixFmtDescriptor* descriptor = av_pix_fmt_desc_get(format);
    return descriptor && (descriptor->flags & AV_PIX_FMT_FLAG_RGB) != 0;
}

// By its format alone, as JPEG has it.
bool IsFullRange(AVPixelFormat format) {
    return std::string_view(av_get_pix_fmt_name(format)).starts_with("yuvj");
}

} // namespace

EncoderSetup SetupOf(const PacketSource& source, const AVFrame& like) {
    AVFieldOrder order = source.Video().codecpar->field_order;
    if (order == AV_FIELD_UNKNOWN && like.interlaced_frame != 0)
        order = like.top_field_first != 0 ? AV_FIELD_TT : AV_FIELD_BB;
    return {source.File().Path(), source.Video().time_base, source.Rate(),
            av_guess_sample_aspect_ratio(&source.Context(), &source.Video(), const_cast<AVFrame*>(&like)),
            order};
}

VideoEncoder::VideoEncoder(const EncodeChoice& choice, EncoderSetup setup, const AVFrame& like,
                           const Container& container)
    : m_setup(std::move(setup)), m_sourceFormat(static_cast<AVPixelFormat>(like.format)) {
    int opened = Open(choice, like, container, m_setup.timeBase);
    if (opened < 0) // some encoders know the times of a constant rate only
        opened = Open(choice, like, container, av_inv_q(m_setup.rate));
    if (opened < 0)
        throw HostError(m_setup.path + ": " + choice.codec + " cannot be opened for pictures of " +
                        std::to_string(like.width) + "x" + std::to_string(like.height) +
                        (choice.options.empty() ? "" : " with " + choice.options) + ": " +
                        FfmpegErrorText(opened));
}

int VideoEncoder::Open(const EncodeChoice& choice, const AVFrame& like, const Container& container,
                       AVRational timeBase) {
    const AVCodec* codec = FindVideoEncoder(choice.codec);
    if (!codec)
        return AVERROR_ENCODER_NOT_FOUND;
    m_encoder = OwnFfmpeg(avcodec_alloc_context3(codec));
    m_encoder->width = like.width;
    m_encoder->height = like.height;
    m_encoder->pix_fmt = NearestFormat(*codec, m_sourceFormat);
    m_encoder->sample_aspect_ratio = m_setup.pixelAspect;
    m_encoder->color_primaries = like.color_primaries;
    m_encoder->color_trc = like.color_trc;
    m_encoder->colorspace = like.colorspace;
    m_encoder->color_range = like.color_range;
    m_encoder->chroma_sample_location = like.chroma_location;
    // What the scaler makes of it:
    if (IsRgb(m_sourceFormat) && !IsRgb(m_encoder->pix_fmt)) {
        m_encoder->colorspace = AVCOL_SPC_SMPTE170M;
        m_encoder->color_range = AVCOL_RANGE_MPEG;
    } else if (IsFullRange(m_sourceFormat) != IsFullRange(m_encoder->pix_fmt)) {
        m_encoder->color_range = IsFullRange(m_encoder->pix_fmt) ? AVCOL_RANGE_JPEG : AVCOL_RANGE_MPEG;
    }
    m_encoder->time_base = timeBase;
    m_encoder->framerate = m_setup.rate;
    m_encoder->field_order = m_setup.fieldOrder;
    if (m_setup.fieldOrder > AV_FIELD_PROGRESSIVE)
        m_encoder->flags |= AV_CODEC_FLAG_INTERLACED_DCT;
    if ((container.format->flags & AVFMT_GLOBALHEADER) != 0)
        m_encoder->flags |= AV_CODEC_FLAG_GLOBAL_HEADER;
    m_encoder->thread_count = 0;
    AVDictionary* options = EncodeOptions(choice).release();
    const int opened = avcodec_open2(m_encoder.get(), codec, &options);
    const Dictionary left(options);
    return opened;
}

VideoEncoder::~VideoEncoder() {
    sws_freeContext(m_scaler);
}

std::string VideoEncoder::Note() const {
    return m_encoder->pix_fmt == m_sourceFormat
               ? ""
               : "pictures are converted from " + std::string(av_get_pix_fmt_name(m_sourceFormat)) + " to " +
                     av_get_pix_fmt_name(m_encoder->pix_fmt) + " for " + m_encoder->codec->name;
}

FfmpegPtr<AVFrame> VideoEncoder::Convert(const AVFrame& picture) {
    if (picture.format == m_encoder->pix_fmt && picture.width == m_encoder->width &&
        picture.height == m_encoder->height)
        return OwnFfmpeg(av_frame_clone(&picture));
    m_scaler = sws_getCachedContext(
        m_scaler, picture.width, picture.height, static_cast<AVPixelFormat>(picture.format), m_encoder->width,
        m_encoder->height, m_encoder->pix_fmt, SWS_BICUBIC, nullptr, nullptr, nullptr);
    auto converted = OwnFfmpeg(av_frame_alloc());
    if (!m_scaler || av_frame_copy_props(converted.get(), &picture) < 0 ||
        sws_scale_frame(m_scaler, converted.get(), &picture) < 0)
        throw HostError(m_setup.path + ": a picture cannot be converted for " + m_encoder->codec->name);
    return converted;
}

void VideoEncoder::Encode(const AVFrame& picture, std::int64_t time, const Sink& sink) {
    const auto own = Convert(picture);
    own->pts = std::max(av_rescale_q(time, m_setup.timeBase, m_encoder->time_base),
                        m_lastTime == INT64_MIN ? INT64_MIN : m_lastTime + 1);
    m_lastTime = own->pts;
    own->pict_type = AV_PICTURE_TYPE_NONE; // the encoder's choice
    own->key_frame = 0;
    Send(own.get(), sink);
}

void VideoEncoder::Send(const AVFrame* picture, const Sink& sink) {
    int result = avcodec_send_frame(m_encoder.get(), picture);
    while (result >= 0 && (result = avcodec_receive_packet(m_encoder.get(), m_packet.get())) >= 0) {
        if (m_packet->duration == 0)
            m_packet->duration = av_rescale_q(1, av_inv_q(m_encoder->framerate), m_encoder->time_base);
        sink(*m_packet);
    }
    if (result < 0 && result != AVERROR(EAGAIN) && result != AVERROR_EOF)
        throw HostError(m_setup.path + ": " + m_encoder->codec->name +
                        " cannot encode a picture: " + FfmpegErrorText(result));
}

} // namespace scenedetect
