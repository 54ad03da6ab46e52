#include "hosts/cli/MediaLibraries.h"

#include "reading/ffmpeg/FfmpegLog.h"

extern "C" {
#include <libavcodec/avcodec.h>
#include <libavformat/avformat.h>
#include <libswscale/swscale.h>
}

namespace scenedetect {
namespace {

std::string LibraryVersion(const char* name, unsigned version) {
    return ' ' + std::string(name) + ' ' + std::to_string(AV_VERSION_MAJOR(version)) + '.' +
           std::to_string(AV_VERSION_MINOR(version)) + '.' + std::to_string(AV_VERSION_MICRO(version));
}

} // namespace

void PrepareLibraries() {
    CaptureFfmpegLog();
}

// Of the libraries that are there when the program runs.
std::string LibraryNotes() {
    return "FFmpeg's libraries:" + LibraryVersion("libavformat", avformat_version()) + ',' +
           LibraryVersion("libavcodec", avcodec_version()) + ',' +
           LibraryVersion("libavutil", avutil_version()) + ',' +
           LibraryVersion("libswscale", swscale_version()) +
           "\nMIT licence; that of these libraries: " + avformat_license();
}

const char* const kInputNotes = "\nInput: any file that FFmpeg's libraries read";

const char* const kClipGroup = "Clips and pictures";

const char* const kClipNotes = R"(
Clips of DV are the frames of the tape, byte for byte, or with --container files that end where the
audio format or the line system changes, too; DV with its audio beside the frames keeps its
container. Other codecs are cut without encoding. Edit lists make clips in MP4 and MOV begin and end
at the very frames; others begin at the key frame before the scene, which a line tells. With
--split-encode clips of any kind do, and audio is still copied. libx264 has crf=18 unless told a
quality; other encoders have FFmpeg's defaults.
A clip that is there already is kept unless --force.
)";

std::span<const LackedOption> LackedOptions() {
    return {};
}

} // namespace scenedetect
