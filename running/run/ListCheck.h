// Whether a list of scenes fits its input.
#pragma once

#include "products/listed/SceneList.h"
#include "reading/media/OpenPictures.h"
#include "running/run/RunSettings.h"

namespace scenedetect {

/// Reads the input through, its warnings unheard. HostError as ListedScenes has it. Nothing is said of a
/// stream, which can't be read twice.
void RequireListFits(const RunSettings& settings, const SceneList& list, const Reading& reading);

} // namespace scenedetect
