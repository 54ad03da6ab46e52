// What clips are to be made, and what is told about those that were.
#pragma once

#include "products/files/NamePattern.h"
#include "products/files/OutputClaims.h"
#include "products/files/OutputTarget.h"
#include "products/muxing/EncodeChoice.h"

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>

namespace scenedetect {

struct ClipSettings {
    std::string folder; ///< made when a clip needs it; empty: no clips are wanted
    NamePattern names{"{name}-{scene}"};
    Existing existing = Existing::Keep;
    std::string container; ///< "avi", "mov", "mkv" or "mp4"; empty: raw DV, or what the source is
    EncodeChoice encode{}; ///< of the video; audio is copied
};

/// A clip that is there under its final name.
struct WrittenClip {
    std::string path;
    std::int64_t firstFrame = 0;  ///< of the scene, as numbered in the file
    std::int64_t frames = 0;      ///< in the clip, with those before its scene
    std::int64_t bytes = 0;       ///< of the file
    std::int64_t framesEarly = 0; ///< before the scene's first, back to the key frame

    std::int64_t framesLate = 0; ///< after its scene's last, which pictures of the scene are made from
    bool hidesOthers = false;    ///< edit lists keep players from showing frames early and late

    /// What the user should know besides, mostly empty: "starts 12 frames early, at the key frame 240".
    std::string note;
};

/// Called with each clip once it is whole, on the thread that cuts.
using ClipListener = std::function<void(const WrittenClip&)>;

/// "1 frame", "12 frames".
[[nodiscard]] std::string FramesText(std::int64_t frames);

/// The path of the clip with these names, claimed, in a folder that is there now. HostError when the run has
/// it already or the folder can't be made.
[[nodiscard]] std::string ClaimClipPath(const ClipSettings& settings, const NameFields& names,
                                        std::string_view suffix, OutputClaims& claims);

} // namespace scenedetect
