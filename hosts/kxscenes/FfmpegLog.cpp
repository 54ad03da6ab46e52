#include "hosts/kxscenes/FfmpegLog.h"

extern "C" {
#include <libavutil/error.h>
#include <libavutil/log.h>
}

#include <cstdarg>
#include <cstdio>
#include <mutex>

namespace scenedetect {
namespace {

struct Capture {
    std::mutex mutex;
    std::size_t count = 0;
    std::string last;
};

// Never destroyed: threads of the libraries may speak until the very end.
Capture& TheCapture() {
    static auto& capture = *new Capture;
    return capture;
}

bool IsDemuxer(void* speaker) {
    if (!speaker)
        return false;
    const AVClass* kind = *static_cast<AVClass**>(speaker);
    const AVClassCategory category = kind->get_category ? kind->get_category(speaker) : kind->category;
    return category == AV_CLASS_CATEGORY_DEMUXER;
}

void Listen(void* speaker, int level, const char* format, va_list arguments) {
    if (level > AV_LOG_ERROR || !IsDemuxer(speaker))
        return;
    char text[256];
    std::vsnprintf(text, sizeof text, format, arguments);
    std::string line = text;
    while (!line.empty() && (line.back() == '\n' || line.back() == '.'))
        line.pop_back();
    Capture& capture = TheCapture();
    const std::lock_guard lock(capture.mutex);
    ++capture.count;
    capture.last = std::move(line);
}

} // namespace

void CaptureFfmpegLog() {
    av_log_set_callback(Listen);
}

std::size_t DemuxerErrorCount() {
    Capture& capture = TheCapture();
    const std::lock_guard lock(capture.mutex);
    return capture.count;
}

std::string LastDemuxerError() {
    Capture& capture = TheCapture();
    const std::lock_guard lock(capture.mutex);
    return capture.last;
}

std::string FfmpegErrorText(int code) {
    char text[AV_ERROR_MAX_STRING_SIZE] = "";
    av_strerror(code, text, sizeof text);
    return text;
}

} // namespace scenedetect
