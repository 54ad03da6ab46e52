#include "products/stills/StillPicture.h"

#include "reading/base/HostError.h"
#include "reading/ffmpeg/FfmpegLog.h"
#include "reading/ffmpeg/FfmpegPointers.h"

extern "C" {
#include <libavcodec/avcodec.h>
#include <libavutil/pixdesc.h>
#include <libswscale/swscale.h>
}

#include <algorithm>
#include <cmath>
#include <memory>
#include <new>

namespace scenedetect {
namespace {

struct Kind {
    StillFormat format;
    AVCodecID codec;
    AVPixelFormat pixels;
};
constexpr Kind kKinds[] = {{StillFormat::Png, AV_CODEC_ID_PNG, AV_PIX_FMT_RGB24},
                           {StillFormat::Jpeg, AV_CODEC_ID_MJPEG, AV_PIX_FMT_YUVJ444P},
                           {StillFormat::Bmp, AV_CODEC_ID_BMP, AV_PIX_FMT_BGR24}};

// What a picture may measure at most; a pixel aspect comes from the file.
constexpr int kMostPixels = 16384;

const Kind& KindOf(StillFormat format) {
    return *std::find_if(std::begin(kKinds), std::end(kKinds),
                         [format](const Kind& each) { return each.format == format; });
}

struct Size {
    int width;
    int height;
};

Size ShownSize(const AVFrame& frame, const StillShape& shape) {
    const AVRational aspect = frame.sample_aspect_ratio;
    const double pixel = aspect.num > 0 && aspect.den > 0 ? av_q2d(aspect) : 1.0;
    // Wider pixels widen the picture; only the width changes, so that no line of the frame is lost.
    double width = frame.width * pixel;
    double height = frame.height;
    if (const bool isTurned = shape.quarters % 2 != 0; shape.width > 0) {
        const double factor = shape.width / (isTurned ? height : width);
        width *= factor;
        height *= factor;
    }
    const auto whole = [](double value) {
        return static_cast<int>(std::clamp<long>(std::lround(value), 1, kMostPixels));
    };
    return {whole(width), whole(height)};
}

FfmpegPtr<AVFrame> NewFrame(AVPixelFormat format, Size size) {
    auto made = OwnFfmpeg(av_frame_alloc());
    made->format = format;
    made->width = size.width;
    made->height = size.height;
    if (av_frame_get_buffer(made.get(), 0) < 0)
        throw std::bad_alloc();
    return made;
}

int ColoursOf(const AVFrame& frame) {
    constexpr int kHighestOfStandardDefinition = 576;
    if (frame.colorspace != AVCOL_SPC_UNSPECIFIED && frame.colorspace != AVCOL_SPC_RGB)
        return frame.colorspace;
    return frame.height > kHighestOfStandardDefinition ? SWS_CS_ITU709 : SWS_CS_ITU601;
}

FfmpegPtr<AVFrame> Convert(const AVFrame& frame, AVPixelFormat format, Size size) {
    auto made = NewFrame(format, size);
    struct Deleter {
        void operator()(SwsContext* context) const { sws_freeContext(context); }
    };
    const std::unique_ptr<SwsContext, Deleter> scaler(sws_getContext(
        frame.width, frame.height, static_cast<AVPixelFormat>(frame.format), size.width, size.height, format,
        SWS_BICUBIC | SWS_ACCURATE_RND | SWS_FULL_CHR_H_INT, nullptr, nullptr, nullptr));
    const bool isFull = frame.color_range == AVCOL_RANGE_JPEG;
    constexpr int kOne = 1 << 16;
    if (!scaler)
        throw HostError(std::string("pictures of the format ") +
                        av_get_pix_fmt_name(static_cast<AVPixelFormat>(frame.format)) +
                        " cannot be converted");
    // JPEG has the colours of standard definition, at full range.
    sws_setColorspaceDetails(scaler.get(), sws_getCoefficients(ColoursOf(frame)), isFull ? 1 : 0,
                             sws_getCoefficients(SWS_CS_ITU601), 1, 0, kOne, kOne);
    if (sws_scale(scaler.get(), frame.data, frame.linesize, 0, frame.height, made->data, made->linesize) !=
        size.height)
        throw HostError("a picture cannot be converted");
    return made;
}

FfmpegPtr<AVFrame> TurnClockwise(const AVFrame& rgb) {
    constexpr std::ptrdiff_t kPixel = 3;
    auto made = NewFrame(static_cast<AVPixelFormat>(rgb.format), {rgb.height, rgb.width});
    for (std::ptrdiff_t y = 0; y < rgb.height; ++y)
        for (std::ptrdiff_t x = 0; x < rgb.width; ++x)
            std::copy_n(rgb.data[0] + y * rgb.linesize[0] + x * kPixel, kPixel,
                        made->data[0] + x * made->linesize[0] + (rgb.height - 1 - y) * kPixel);
    return made;
}

void RequireDone(int result, const char* what) {
    if (result < 0)
        throw HostError(std::string("a picture cannot be encoded: ") + what + ": " + FfmpegErrorText(result));
}

std::vector<std::uint8_t> Encode(const AVFrame& frame, const Kind& kind, int loss) {
    const AVCodec* codec = avcodec_find_encoder(kind.codec);
    if (!codec)
        throw HostError(std::string("this FFmpeg has no encoder for ") + avcodec_get_name(kind.codec));
    const auto encoder = OwnFfmpeg(avcodec_alloc_context3(codec));
    encoder->width = frame.width;
    encoder->height = frame.height;
    encoder->pix_fmt = static_cast<AVPixelFormat>(frame.format);
    encoder->time_base = {1, 25};
    encoder->color_range = AVCOL_RANGE_JPEG;
    encoder->thread_count = 1;
    encoder->flags |= AV_CODEC_FLAG_QSCALE;
    encoder->global_quality = loss * FF_QP2LAMBDA;
    RequireDone(avcodec_open2(encoder.get(), codec, nullptr), codec->name);
    const auto shown = OwnFfmpeg(av_frame_clone(&frame));
    shown->quality = encoder->global_quality;
    shown->pts = 0;
    RequireDone(avcodec_send_frame(encoder.get(), shown.get()), codec->name);
    RequireDone(avcodec_send_frame(encoder.get(), nullptr), codec->name);
    const auto packet = OwnFfmpeg(av_packet_alloc());
    RequireDone(avcodec_receive_packet(encoder.get(), packet.get()), codec->name);
    return {packet->data, packet->data + packet->size};
}

} // namespace

std::vector<std::uint8_t> EncodeStill(const AVFrame& frame, const StillShape& shape, StillFormat format) {
    const Kind& kind = KindOf(format);
    const Size size = ShownSize(frame, shape);
    if (shape.quarters == 0)
        return Encode(*Convert(frame, kind.pixels, size), kind, shape.loss);
    auto turned = Convert(frame, AV_PIX_FMT_RGB24, size);
    for (int quarter = 0; quarter < shape.quarters; ++quarter)
        turned = TurnClockwise(*turned);
    return Encode(*Convert(*turned, kind.pixels, {turned->width, turned->height}), kind, shape.loss);
}

} // namespace scenedetect
