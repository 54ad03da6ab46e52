// The part of an audio packet, or of a subtitle, that lies in a clip.
#pragma once

extern "C" {
#include <libavformat/avformat.h>
}

#include <cstdint>

namespace scenedetect {

/// Cuts a packet to [begin, end), in the stream's time base: PCM to the sample, for which only its own fields
/// change, other audio by whole packets that begin there, or so many of their durations earlier. False when
/// nothing of it is left.
[[nodiscard]] bool CutAudio(AVPacket& packet, const AVStream& stream, std::int64_t begin, std::int64_t end,
                            std::int64_t before);

/// Cuts a subtitle to [begin, end), in the stream's time base. False when it is not shown there.
[[nodiscard]] bool CutSubtitle(AVPacket& packet, std::int64_t begin, std::int64_t end);

/// So many packets earlier the audio of a clip begins where edits hide them: one sounds at its beginning, and
/// a decoder makes that from the one before it.
inline constexpr std::int64_t kDecodedBefore = 2;

} // namespace scenedetect
