#include "reading/ffmpeg/FfmpegLog.h"

extern "C" {
#include <libavutil/error.h>
#include <libavutil/log.h>
}

#include <cstdarg>
#include <cstdio>
#include <utility>

namespace scenedetect {
namespace {

struct Capture {
    std::size_t count = 0;
    std::string last;
};

// Demuxers and muxers speak on the thread that reads or writes, so that runs side by side keep theirs apart.
thread_local Capture t_capture;

// Slice threads of decoders log with an object whose class is not set yet.
bool IsFormat(void* speaker) {
    const AVClass* const kind = speaker ? *static_cast<AVClass**>(speaker) : nullptr;
    if (!kind)
        return false;
    const AVClassCategory category = kind->get_category ? kind->get_category(speaker) : kind->category;
    return category == AV_CLASS_CATEGORY_DEMUXER || category == AV_CLASS_CATEGORY_MUXER;
}

void Listen(void* speaker, int level, const char* format, va_list arguments) {
    if (level > AV_LOG_ERROR || !IsFormat(speaker))
        return;
    char text[256];
    std::vsnprintf(text, sizeof text, format, arguments);
    std::string line = text;
    while (!line.empty() && (line.back() == '\n' || line.back() == '.'))
        line.pop_back();
    ++t_capture.count;
    t_capture.last = std::move(line);
}

} // namespace

void CaptureFfmpegLog() {
    av_log_set_callback(Listen);
}

std::size_t FormatErrorCount() {
    return t_capture.count;
}

std::string LastFormatError() {
    return t_capture.last;
}

std::string FfmpegErrorText(int code) {
    char text[AV_ERROR_MAX_STRING_SIZE] = "";
    av_strerror(code, text, sizeof text);
    return text;
}

} // namespace scenedetect
