#include "products/muxing/Container.h"

#include "reading/base/HostError.h"

extern "C" {
#include <libavcodec/avcodec.h>
#include <libavformat/avformat.h>
}

#include <algorithm>
#include <array>
#include <filesystem>
#include <string_view>

namespace scenedetect {

Container ContainerNamed(const std::string& name) {
    const std::string suffix = "." + name;
    const AVOutputFormat* format = av_guess_format(nullptr, suffix.c_str(), nullptr);
    if (!format)
        throw HostError(name + " files cannot be written by FFmpeg's libraries here");
    return {format, suffix};
}

Container ContainerLike(const std::string& source, std::span<AVStream* const> streams) {
    const std::string suffix = std::filesystem::path(source).extension().native();
    const Container same{av_guess_format(nullptr, suffix.c_str(), nullptr), suffix};
    const bool isWritable = same.format && (same.format->flags & AVFMT_NOFILE) == 0 &&
                            same.format->name != std::string_view("dv") &&
                            std::ranges::all_of(streams, [&](const AVStream* stream) {
                                return IsSubtitle(*stream) || CanHold(same, *stream->codecpar);
                            });
    return isWritable ? same : ContainerNamed("mkv");
}

bool HasEdits(const Container& container) {
    constexpr std::array<std::string_view, 6> kNames = {"mov", "mp4", "ipod", "3gp", "3g2", "f4v"};
    return std::ranges::find(kNames, container.format->name) != kNames.end();
}

bool HasWrongIndex(const Container& container, const AVCodecParameters& video) {
    return container.format->name == std::string_view("mxf") && video.codec_id == AV_CODEC_ID_MPEG2VIDEO &&
           video.video_delay != 0;
}

bool IsSubtitle(const AVStream& stream) {
    return stream.codecpar->codec_type == AVMEDIA_TYPE_SUBTITLE;
}

bool CanHold(const Container& container, const AVCodecParameters& codec) {
    // Matroska knows some codecs, DV for one, by their AVI names only, and calls that unofficial.
    return avformat_query_codec(container.format, codec.codec_id, FF_COMPLIANCE_UNOFFICIAL) != 0;
}

std::string Advice(const Container& container) {
    return container.format->name == std::string_view("matroska") ? "" : "; --container mkv holds most";
}

std::string RefusalText(const Container& container, const AVCodecParameters& codec) {
    return std::string(container.format->name) + " cannot hold " + avcodec_get_name(codec.codec_id);
}

} // namespace scenedetect
