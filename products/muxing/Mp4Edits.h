// Ends the tracks of an MP4 or MOV file at a time: FFmpeg's muxer makes the edits that begin them, and these
// last as long as there are packets.
#pragma once

#include "products/files/OutputFile.h"

extern "C" {
#include <libavutil/rational.h>
}

#include <cstdint>
#include <span>

namespace scenedetect {

/// In the body of a movie box (moov): shortens the last edit of each track so that nothing is presented from
/// `end` on, a time since the beginning of the presentation, and the durations of tracks and movie with it.
/// False when there is no such box or it makes no sense; what was changed before stays then.
[[nodiscard]] bool EndEditsAt(std::span<std::uint8_t> movie, std::int64_t end, AVRational timeBase);

/// The same in a file that is written, and not committed. HostError when it can't be changed.
void EndEditsAt(const OutputFile& file, std::int64_t end, AVRational timeBase);

} // namespace scenedetect
