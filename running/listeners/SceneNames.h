// What the fields of file names stand for at a scene.
#pragma once

#include "products/files/NamePattern.h"
#include "running/run/RunListener.h"

namespace scenedetect {

/// Timecode, date, time, aspect and audio are those of the tape, from the scene's first frame. Without DV
/// timecode it is the file's own, or counts from 0; what else the frame does not say is empty.
[[nodiscard]] NameFields NamesOf(const FoundScene& scene, const RunInfo& info);

} // namespace scenedetect
