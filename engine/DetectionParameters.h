// The parameters of the picture comparison: terms, defaults, ranges, and what turning each does.
#pragma once

#include <array>
#include <atomic>
#include <cstdint>
#include <limits>

namespace scenedetect {

/// Frames after which a scene ends even without a cut; 0 or less: never. The default of every engine of the
/// process that has no length of its own.
extern std::atomic<std::int32_t> g_maxSceneLength;

/// Any values are safe; those that make sense are in `kDetectionParameters`.
struct DetectionParameters {
    /// A longest scene that stands for g_maxSceneLength, as that is when a frame is judged.
    static constexpr std::int32_t kProcessWide = -1;

    std::int32_t cutThreshold = 13; ///< by how much a cut's difference exceeds its neighbours'
    std::int32_t darkLevel = 25;    ///< mean level up to which a frame is dark
    std::int32_t clamp = 255;       ///< most that one sample adds to a difference
    std::int32_t votes = 3;         ///< neighbours, of four, that a cut's difference has to exceed
    std::int32_t longestScene = kProcessWide;

    /// Frames after which a scene ends, the process-wide length looked up; 0 or less: never.
    [[nodiscard]] std::int32_t LongestScene() const {
        return longestScene == kProcessWide ? g_maxSceneLength.load(std::memory_order_relaxed) : longestScene;
    }
    friend bool operator==(const DetectionParameters&, const DetectionParameters&) = default;
};

/// One parameter as it is offered to people and programs.
struct ParameterFacts {
    const char* name; ///< as an option: lower case, words joined by hyphens
    std::int32_t DetectionParameters::*value;
    std::int32_t least;
    std::int32_t most;
    const char* effect; ///< one sentence without its full stop

    [[nodiscard]] constexpr bool Allows(std::int32_t number) const {
        return number >= least && number <= most;
    }
    /// The value in `parameters`; the process-wide longest scene as the number that it is at present.
    [[nodiscard]] std::int32_t Of(const DetectionParameters& parameters) const;
};

/// All of them, in the order of KxDetectionParameter. Differences and levels lie in 0..255.
inline constexpr std::array<ParameterFacts, 5> kDetectionParameters = {{
    {"cut-threshold", &DetectionParameters::cutThreshold, 0, 255,
     "By how much a frame's difference must exceed its neighbours' to be a cut: "
     "higher finds fewer cuts, lower also faint ones"},
    {"dark-level", &DetectionParameters::darkLevel, -1, 255,
     "Mean level up to which a frame is dark, so that the darkest of a fade starts a scene: "
     "higher also takes fades that stay brighter, -1 takes none"},
    {"clamp", &DetectionParameters::clamp, 1, 255,
     "The most that one sample adds to a difference: "
     "lower makes great changes of small parts, such as flashes and captions, count less"},
    {"votes", &DetectionParameters::votes, 1, 4,
     "How many of its four neighbours a cut must exceed: "
     "4 is strictest, lower also finds cuts amid motion, and false ones"},
    {"longest-scene", &DetectionParameters::longestScene, 0, std::numeric_limits<std::int32_t>::max(),
     "Frames after which a scene ends even without a cut: lower splits long scenes, 0 sets no limit"},
}};

} // namespace scenedetect
