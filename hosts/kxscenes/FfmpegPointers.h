// Owners of the objects of FFmpeg's libraries.
#pragma once

extern "C" {
#include <libavcodec/avcodec.h>
#include <libavutil/frame.h>
}

#include <memory>
#include <new>

namespace scenedetect {

struct FfmpegDeleter {
    void operator()(AVPacket* packet) const { av_packet_free(&packet); }
    void operator()(AVFrame* frame) const { av_frame_free(&frame); }
    void operator()(AVCodecContext* decoder) const { avcodec_free_context(&decoder); }
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
