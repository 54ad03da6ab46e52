// The run of one input: what is read, and how scenes are found in it.
#pragma once

#include "reading/timing/RunRange.h"
#include "running/detection/DetectionSettings.h"
#include "running/run/SceneLength.h"

#include <cstdint>
#include <string>
#include <vector>

namespace scenedetect {

struct RunSettings {
    std::string input; ///< a path, or "-" for the standard input
    DetectionSettings detection;
    std::vector<std::string> xmlPaths; ///< for each method its scene-list file; empty: none
    RangeChoice range;
    SceneLength length{};         ///< of all scenes but those of the scene-list files
    std::string listPath{};       ///< of scenes that are read, in place of all that finds some; empty: none
    bool checksListFirst = false; ///< outputs of DV are written before its end is known
    bool wantsFigures = false;    ///< of the picture comparison, for listeners
    bool wantsDistances = false;  ///< with distances to earlier frames
    bool decodesFast = false;     ///< with the decoder's shortcuts
    bool isOneOfMany = false;     ///< its messages begin with its name
};

} // namespace scenedetect
