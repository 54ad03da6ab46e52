// Scenes shorter than the user wants to see, joined to their neighbours.
#pragma once

#include "products/outputs/SceneTable.h"

#include <cstdint>
#include <vector>

namespace scenedetect {

/// A short scene becomes part of the one before it, so that each scene that stays begins with a picture of
/// its own and not with the flash or the torn frames of a cut; the first, before which there is none, takes
/// what follows until it is long enough. `scenes` follow each other without gaps. What comes back does too,
/// and is shorter than `minFrames` only where all of them together are.
[[nodiscard]] std::vector<SceneSpan> MergeShortScenes(const std::vector<SceneSpan>& scenes,
                                                      std::int64_t minFrames);

} // namespace scenedetect
