// What time stamps can be true: one rule for numbering frames and for cutting them.
#pragma once

#include <cstdint>

namespace scenedetect {

// Joined streams: no gap of a recording is as long, and no picture or packet comes so much too early.
inline constexpr std::int64_t kJumpAheadSeconds = 10;
inline constexpr std::int64_t kJumpBackSeconds = 1;
/// Stamps further off than this are damage, and keeping them out keeps all sums in range.
inline constexpr std::int64_t kFarthestStamp = std::int64_t{1} << 56;

} // namespace scenedetect
