// The parameters of the picture comparison: terms, defaults and ranges.
#pragma once

#include <array>
#include <atomic>
#include <cstdint>
#include <limits>

namespace scenedetect {

/// Frames after which a scene ends even without a cut; 0 or less: never. The default of every engine of the
/// process that has no length of its own.
extern std::atomic<std::int32_t> g_maxSceneLength;

/// Of a picture's width or height, in per mille: the whole.
inline constexpr std::int32_t kWholeArea = 1000;

/// Any values are safe; those that make sense are in `kDetectionParameters`.
struct DetectionParameters {
    /// A longest scene that stands for g_maxSceneLength, as that is when a frame is judged.
    static constexpr std::int32_t kProcessWide = -1;

    std::int32_t cutThreshold = 13; ///< by how much a cut's difference exceeds its neighbours'
    std::int32_t darkLevel = 25;    ///< mean level up to which a frame is dark
    std::int32_t diffClamp = 255;   ///< most that one sample adds to a difference
    std::int32_t minVotes = 3;      ///< neighbours, of four, that a cut's difference has to exceed
    std::int32_t longestScene = kProcessWide;
    // The part of the picture that is compared, in per mille of its width and height. What of it lies outside
    // the picture has no samples.
    std::int32_t areaLeft = 0;
    std::int32_t areaTop = 0;
    std::int32_t areaWidth = kWholeArea;
    std::int32_t areaHeight = kWholeArea;

    /// Frames after which a scene ends, the process-wide length looked up; 0 or less: never.
    [[nodiscard]] std::int32_t LongestScene() const {
        return longestScene == kProcessWide ? g_maxSceneLength.load(std::memory_order_relaxed) : longestScene;
    }
    [[nodiscard]] bool HasWholeArea() const {
        return areaLeft == 0 && areaTop == 0 && areaWidth >= kWholeArea && areaHeight >= kWholeArea;
    }
    friend bool operator==(const DetectionParameters&, const DetectionParameters&) = default;
};

/// One parameter, and the values of it that make sense.
struct ParameterRange {
    std::int32_t DetectionParameters::*value;
    std::int32_t least;
    std::int32_t most;

    [[nodiscard]] constexpr bool Allows(std::int32_t number) const {
        return number >= least && number <= most;
    }
    /// The value in `parameters`; the process-wide longest scene as the number that it is at present.
    [[nodiscard]] std::int32_t Of(const DetectionParameters& parameters) const;
};

/// All of them, in the order of KxDetectionParameter. Differences and levels lie in 0..255.
inline constexpr std::array<ParameterRange, 9> kDetectionParameters = {{
    {&DetectionParameters::cutThreshold, 0, 255},
    {&DetectionParameters::darkLevel, -1, 255},
    {&DetectionParameters::diffClamp, 1, 255},
    {&DetectionParameters::minVotes, 1, 4},
    {&DetectionParameters::longestScene, 0, std::numeric_limits<std::int32_t>::max()},
    {&DetectionParameters::areaLeft, 0, kWholeArea - 1},
    {&DetectionParameters::areaTop, 0, kWholeArea - 1},
    {&DetectionParameters::areaWidth, 1, kWholeArea},
    {&DetectionParameters::areaHeight, 1, kWholeArea},
}};

} // namespace scenedetect
