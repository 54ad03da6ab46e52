// The rule that places a scene: which frame number a frame under watch gives it, and whether there is one.
#pragma once

#include "engine/decision/Decision.h"

#include <windows.h>

#include <cstdint>

namespace scenedetect {

/// The moment at which a scene is added. Times are in 100 ns; the start is relative to the run's first
/// sample.
struct SceneMoment {
    std::int32_t frameNumber = 0; ///< frames of the run before this one
    LONGLONG start = 0;           ///< start of the current sample
    LONGLONG duration = 0;        ///< its length; 0 or less when unknown
    LONGLONG frameDuration = 0;   ///< what the media type says a frame lasts; 0 or 1000000 when it does not
    std::int32_t frameOffset = 0; ///< set by the host
    LONGLONG timeOffset = 0;      ///< set by the host
};

/// The position of a scene added at `moment` under detection method `method`. Picture changes are known two
/// frames late, so "Video" positions lie two frames before the moment, and never before 0. A position that
/// does not fit 32 bits saturates.
[[nodiscard]] std::int32_t ScenePosition(std::uint32_t method, const SceneMoment& moment);

/// Whether frame `frameNumber` of a run adds a scene under "Video", given what the comparison made of it.
[[nodiscard]] bool AddsVideoScene(std::int32_t frameNumber, const Judgement& judgement);

} // namespace scenedetect
