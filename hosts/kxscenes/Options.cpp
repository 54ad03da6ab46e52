#include "hosts/kxscenes/Options.h"

namespace scenedetect {
namespace {

constexpr const char* kDescription =
    "Finds the scenes of a video file: prints one CSV line a scene, and on request writes a scene list.";

constexpr const char* kNotes = R"(
Input: any file that FFmpeg's libraries read, or "-" for the standard input, of which each scene is printed as
soon as it can be known. DV frames and the uncompressed frames of AVI files are
examined as they are, everything else is decoded. A frame that is not whole is left out with a warning; of these each of the first
ten gets a line.

Output: a header line, then a line a scene: scene,frame,timecode,seconds. "scene" counts from 1, "frame" is
the frame of the file, from 0. In files of constant rate frames that were dropped while recording count too;
in files of variable rate frames are the pictures in their order, timecode and seconds the time stamps.
Positions of --mark and of the scene list count the pictures that are there.
)";

} // namespace

CommandLine ParseCommandLine(int argc, const char* const* argv) {
    return ParseCommandLine({"kxscenes", kDescription, kNotes, {}, {}}, argc, argv);
}

} // namespace scenedetect
