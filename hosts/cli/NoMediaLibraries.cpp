#include "hosts/cli/MediaLibraries.h"

namespace scenedetect {
namespace {

constexpr const char* kNoDecoder =
    "this build has no decoders and so makes no pictures; kxscenes on Linux does, also with --scenes and a "
    "list of this one";
constexpr const char* kNoContainer = "this build cuts raw DV only; ffmpeg puts clips of that into any "
                                     "container: ffmpeg -i CLIP.dv -c copy CLIP.mov";

constexpr LackedOption kLacked[] = {
    {"--container", kNoContainer},
    {"--split-encode", kNoContainer},
    {"--pictures", kNoDecoder},
    {"--picture-at", kNoDecoder},
    {"--picture-width", kNoDecoder},
    {"--picture-format", kNoDecoder},
    {"--decode", "this build has no decoders: it reads all frames as they are, which is fast enough"},
    {"--part", "this build reads what is copied about as fast as it is measured; measure the whole file"},
};

} // namespace

void PrepareLibraries() {}

std::string LibraryNotes() {
    return "without FFmpeg's libraries\nMIT licence";
}

const char* const kInputNotes = R"(
Input: raw DV, and AVI files with DV or uncompressed frames (YUY2, UYVY, I420, YV12, RGB24; this
build has no decoders for other files))";

const char* const kClipGroup = "Clips";

const char* const kClipNotes = R"(
Clips are made of DV: the frames of the tape, byte for byte. A clip that is there already is kept
unless --force.
)";

std::span<const LackedOption> LackedOptions() {
    return kLacked;
}

} // namespace scenedetect
