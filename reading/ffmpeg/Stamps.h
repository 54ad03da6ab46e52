// Time stamps of packets and pictures: which one counts, and which can be true.
#pragma once

extern "C" {
#include <libavcodec/packet.h>
#include <libavutil/avutil.h>
}

#include <cstdint>

namespace scenedetect {

// Joined streams: no gap of a recording is as long, and no picture or packet comes so much too early.
inline constexpr std::int64_t kJumpAheadSeconds = 10;
inline constexpr std::int64_t kJumpBackSeconds = 1;
/// Stamps further off than this are damage, and keeping them out keeps all sums in range.
inline constexpr std::int64_t kFarthestStamp = std::int64_t{1} << 56;

/// Whether it is too far off to be true, or missing (AV_NOPTS_VALUE).
[[nodiscard]] constexpr bool IsWild(std::int64_t stamp) {
    return stamp < -kFarthestStamp || stamp > kFarthestStamp;
}

/// The PTS, or the DTS where that is missing; AV_NOPTS_VALUE without either.
[[nodiscard]] inline std::int64_t PresentationTime(const AVPacket& packet) {
    return packet.pts != AV_NOPTS_VALUE ? packet.pts : packet.dts;
}

} // namespace scenedetect
