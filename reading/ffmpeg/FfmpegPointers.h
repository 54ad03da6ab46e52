// Owners of the objects of FFmpeg's libraries.
#pragma once

extern "C" {
#include <libavcodec/avcodec.h>
#include <libavformat/avio.h>
#include <libavutil/frame.h>
#include <libavutil/mem.h>
}

#include <memory>
#include <new>

namespace scenedetect {

struct FfmpegDeleter {
    void operator()(AVPacket* packet) const { av_packet_free(&packet); }
    void operator()(AVFrame* frame) const { av_frame_free(&frame); }
    void operator()(AVCodecContext* decoder) const { avcodec_free_context(&decoder); }
    void operator()(AVIOContext* reading) const {
        av_freep(&reading->buffer);
        avio_context_free(&reading);
    }
};

template <class Object>
using FfmpegPtr = std::unique_ptr<Object, FfmpegDeleter>;

/// Takes over what an allocating function returned; std::bad_alloc for null.
template <class Object>
[[nodiscard]] FfmpegPtr<Object> OwnFfmpeg(Object* object) {
    if (!object)
        throw std::bad_alloc();
    return FfmpegPtr<Object>(object);
}

} // namespace scenedetect
