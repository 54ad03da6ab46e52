// The rule of the scene-change engine: two numbers per frame in, a scene's first frame out, two frames late.
#pragma once

#include "engine/decision/DetectionParameters.h"

#include <array>
#include <cstdint>
#include <optional>

namespace scenedetect {

/// The result of one frame, the current one. It concerns two more: the frame before, whose difference may be
/// filled, and the frame two before, which is the one that is judged.
struct Judgement {
    std::int32_t difference = 0;          ///< of the current frame, as it was measured
    std::int32_t level = 0;               ///< of the current frame
    std::optional<std::int32_t> filled{}; ///< stands in for the difference of the frame before, which is 0
    bool isDark = false;                  ///< the frame two before is dark among brighter ones
    std::int32_t sceneStart = -1; ///< number of the frame two before if a scene starts with it, else -1
    // Why: of the frame two before.
    bool isJudged = false;     ///< there are frames enough on either side
    std::uint8_t exceeded = 0; ///< a bit for each of four neighbours, the oldest lowest, that it exceeds
    bool isLocked = false;     ///< it can't be the dark one: it is not bright again since the last scene
    bool isBeside = false;     ///< it would start a scene, but the frame before does
    bool isLongest = false;    ///< it starts one since the scene before it is as long as it may be
};

/// The rule and its state. Needs no pictures: figures noted in one run can be judged again with other
/// parameters. For one thread.
class Decision {
  public:
    /// Takes effect with the next frame; forgets nothing. The clamp has done its work by then.
    void SetParameters(const DetectionParameters& parameters) { m_parameters = parameters; }
    [[nodiscard]] const DetectionParameters& Parameters() const { return m_parameters; }
    /// Forgets every frame.
    void Reset();
    /// Counts on from `frame`, with a new warm-up.
    void SetStartFrame(std::int32_t frame);
    [[nodiscard]] std::int32_t FrameCount() const { return frameCount; }
    /// Of the latest five frames, oldest first; differences as they were judged.
    [[nodiscard]] const std::array<std::int32_t, 5>& Differences() const { return diffHistory; }
    [[nodiscard]] const std::array<std::int32_t, 5>& Levels() const { return levelHistory; }

    /// Takes the next frame's difference to the frame before it and its mean level, and counts it.
    Judgement Judge(std::int32_t difference, std::int32_t level);

  private:
    void Decide(Judgement& judgement);

    DetectionParameters m_parameters;
    // The state bears the rule's names.
    bool darkLock = false;
    std::int32_t lastCut = 0;
    std::array<std::int32_t, 5> diffHistory{};  ///< oldest first
    std::array<std::int32_t, 5> levelHistory{}; ///< likewise
    std::int32_t startFrame = 0;
    std::int32_t frameCount = 0;
};

} // namespace scenedetect
