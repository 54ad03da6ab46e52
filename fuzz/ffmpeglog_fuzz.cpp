// What FFmpeg's libraries log: whoever speaks, only errors of demuxers and muxers are kept, as one line.
#include "fuzz/Input.h"
#include "reading/ffmpeg/FfmpegLog.h"

extern "C" {
#include <libavutil/log.h>
}

#include <string>

using namespace scenedetect;
using fuzz::Require;

namespace {

AVClassCategory g_answer = AV_CLASS_CATEGORY_NA;

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    constexpr std::uint8_t kNobody = 1, kNoClass = 2, kAnswers = 4;
    CaptureFfmpegLog();
    for (fuzz::Input input(data, size); !input.IsEmpty();) {
        const auto flags = input.Take<std::uint8_t>();
        AVClass kind{};
        kind.class_name = "fuzz";
        kind.category = g_answer =
            static_cast<AVClassCategory>(input.Take<std::uint8_t>() % AV_CLASS_CATEGORY_NB);
        if ((flags & kAnswers) != 0) {
            kind.category = AV_CLASS_CATEGORY_NA;
            kind.get_category = [](void*) { return g_answer; };
        }
        const AVClass* speaker = (flags & kNoClass) != 0 ? nullptr : &kind;
        const int level = input.Take<std::int8_t>();
        const auto bytes = input.TakeBytes(input.Take<std::uint16_t>() % 600);
        const std::string text(bytes.begin(), bytes.end());

        const std::size_t before = FormatErrorCount();
        av_log((flags & kNobody) != 0 ? nullptr : static_cast<void*>(&speaker), level, "%s.\n", text.c_str());
        const bool isFormat = g_answer == AV_CLASS_CATEGORY_DEMUXER || g_answer == AV_CLASS_CATEGORY_MUXER;
        const bool isKept = (flags & (kNobody | kNoClass)) == 0 && isFormat && level <= AV_LOG_ERROR;
        Require(FormatErrorCount() == before + (isKept ? 1 : 0));
        if (isKept)
            Require(std::string_view(text.c_str()).starts_with(LastFormatError()) &&
                    !LastFormatError().ends_with('\n') && !LastFormatError().ends_with('.'));
    }
    return 0;
}
