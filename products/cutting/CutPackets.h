// Cuts a file of any kind without encoding: a second pass over its packets, once its scenes are known.
#pragma once

#include "products/clips/ClipSettings.h"
#include "reading/timing/SampleTable.h"
#include "reading/timing/TimeScale.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace scenedetect {

/// What is to be cut, in places and times of the first pass.
struct PacketCut {
    struct Scene {
        FilePlace place; ///< of its first picture
        NameFields names;
        std::optional<std::int64_t> end{}; ///< time of the first picture after it; none: the next scene's
    };
    std::string path; ///< a regular file
    TimeScale scale;
    FilePlace firstPicture; ///< the first of the file, by which the times are tied to the file's stamps
    std::vector<Scene> scenes;
    std::int64_t end = 0;    ///< time after the last picture that was read
    bool endsBefore = false; ///< the last clip ends there, and not where the file does
};

/// What is known of the clips of a file before its scenes are.
struct ClipPlan {
    std::string suffix;             ///< with the dot
    std::vector<std::string> notes; ///< for the user, mostly none
};

/// HostError when the file can't be read.
[[nodiscard]] ClipPlan PlanClips(const std::string& path, const ClipSettings& settings);

/// Each clip begins at the nearest key frame at or before its scene (its note says by how much), and ends
/// with the last packet that is presented before the next scene; audio is cut to the same span and stays in
/// step. The scenes may come in any order; of several at one place the first counts. Without a container
/// named the clips are as the source is, or Matroska where that can't be written. Memory holds a group of
/// pictures.
///
/// HostError when reading or writing fails: clips reported before stay, of the others nothing does.
void CutPackets(const ClipSettings& settings, PacketCut cut, OutputClaims& claims,
                const ClipListener& listener);

} // namespace scenedetect
