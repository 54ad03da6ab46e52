// What the fields of file names stand for at a scene.
#pragma once

#include "products/files/NamePattern.h"
#include "running/run/RunListener.h"

namespace scenedetect {

/// Timecode, date and time are those of the tape, from the scene's first frame. Without DV timecode it is the
/// file's own, or counts from 0; without a recording time the other two are empty.
[[nodiscard]] NameFields NamesOf(const FoundScene& scene, const RunInfo& info);

} // namespace scenedetect
