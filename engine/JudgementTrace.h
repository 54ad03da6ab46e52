// The diagnostic log's line for each frame that was judged.
#pragma once

#include "engine/decision/Decision.h"

#include <cstdint>

namespace scenedetect {

/// What the decision has just made of a frame. Costs a look at the level where the log has no trace, and
/// nothing is told of frames that are not judged. `framesPerSecond` is whole, for the time codes.
void TraceJudgement(const Decision& decision, const Judgement& judgement, std::int32_t framesPerSecond);

} // namespace scenedetect
