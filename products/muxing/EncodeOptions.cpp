#include "products/muxing/EncodeOptions.h"

#include "reading/ffmpeg/FfmpegLog.h"

extern "C" {
#include <libavutil/opt.h>
}

#include <algorithm>
#include <array>
#include <string_view>

namespace scenedetect {
namespace {

bool HasOption(const AVDictionary* options, const char* name) {
    return av_dict_get(options, name, nullptr, 0) != nullptr;
}

} // namespace

const AVCodec* FindVideoEncoder(const std::string& name) {
    const AVCodec* codec = avcodec_find_encoder_by_name(name.c_str());
    if (const AVCodecDescriptor* named = avcodec_descriptor_get_by_name(name.c_str()); !codec && named)
        codec = avcodec_find_encoder(named->id);
    return codec && codec->type == AVMEDIA_TYPE_VIDEO ? codec : nullptr;
}

Dictionary EncodeOptions(const EncodeChoice& choice) {
    AVDictionary* options = nullptr;
    if (av_dict_parse_string(&options, choice.options.c_str(), "=", ":", 0) < 0)
        av_dict_free(&options);
    constexpr std::array kQualities = {"crf", "qp", "b", "global_quality", "x264-params", "x264opts"};
    const AVCodec* codec = FindVideoEncoder(choice.codec);
    const std::string_view name = codec ? codec->name : "";
    if (name == "libx264" &&
        std::ranges::none_of(kQualities, [&](const char* each) { return HasOption(options, each); }))
        av_dict_set(&options, "crf", "18", 0);
    if (name == "libx265" && !HasOption(options, "x265-params"))
        av_dict_set(&options, "x265-params", "log-level=error", 0);
    return Dictionary(options);
}

std::string EncodeFault(const std::string& text) {
    const EncodeChoice choice = ParseEncodeChoice(text);
    const AVCodec* codec = FindVideoEncoder(choice.codec);
    if (!codec)
        return "FFmpeg's libraries have no video encoder " + choice.codec + " here";
    AVDictionary* options = nullptr;
    const int parsed = av_dict_parse_string(&options, choice.options.c_str(), "=", ":", 0);
    const Dictionary owned(options);
    if (parsed < 0)
        return "options are NAME=VALUE with colons between: " + choice.options;
    CaptureFfmpegLog(); // which tells more of it than is wanted here
    const auto encoder = OwnFfmpeg(avcodec_alloc_context3(codec));
    for (const AVDictionaryEntry* each = nullptr;
         (each = av_dict_get(options, "", each, AV_DICT_IGNORE_SUFFIX)) != nullptr;) {
        const int set = av_opt_set(encoder.get(), each->key, each->value, AV_OPT_SEARCH_CHILDREN);
        if (set == AVERROR_OPTION_NOT_FOUND)
            return std::string(codec->name) + " has no option " + each->key;
        if (set < 0)
            return std::string(codec->name) + ": " + each->key + " does not take " + each->value;
    }
    return "";
}

} // namespace scenedetect
