// How the scenes of a run are found: methods, marks, the parameters of the picture comparison, and what the
// tape itself tells.
#pragma once

#include "engine/decision/DetectionParameters.h"
#include "reading/dv/TapeJudge.h"
#include "running/detection/AreaChoice.h"
#include "scenes/IKxSceneDetect.h"
#include "scenes/transitions/TransitionRule.h"

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace scenedetect {

/// The word that users have for a method: "timestamp", "video", "interval" or "manual".
[[nodiscard]] std::string MethodWord(KxDetectionMethod method);
[[nodiscard]] std::optional<KxDetectionMethod> MethodOf(const std::string& word);

/// The word that users have for how a scene of the video method begins; for a cut that of the method.
[[nodiscard]] std::string KindWord(SceneKind kind);

/// "off", "start", "middle" or "end".
[[nodiscard]] std::string FadePlaceWord(FadePlace place);
[[nodiscard]] std::optional<FadePlace> FadePlaceOf(const std::string& word);

/// The word that users ask for a cut by: "recordings", else as TapeCutWord.
[[nodiscard]] std::string TapeCutOption(TapeCut cut);
[[nodiscard]] std::optional<TapeCut> TapeCutOf(const std::string& option);

struct PictureSize {
    int width;
    int height;
};
/// For areas in per cent, which are the same in all.
inline constexpr PictureSize kAnySize{kWholeArea, kWholeArea};

/// The parameters that were given, each within its range, in the order of KxDetectionParameter.
struct ParameterChoice {
    std::array<std::optional<std::int32_t>, kDetectionParameters.size()> values{};
    std::optional<AreaChoice> area{}; ///< not among the values before SettleArea

    /// Puts the area among the values, for pictures of which the left and upper part can be compared.
    /// HostError when it reaches beyond them.
    void SettleArea(PictureSize seen, PictureSize stored);
    /// `base` with the given values in place of its own.
    [[nodiscard]] DetectionParameters On(DetectionParameters base) const;
    [[nodiscard]] bool IsEmpty() const { return *this == ParameterChoice{}; }
    friend bool operator==(const ParameterChoice&, const ParameterChoice&) = default;
};

/// Already checked for sense.
struct DetectionSettings {
    std::vector<KxDetectionMethod> methods; ///< each once, in the order they were given
    std::vector<TapeCut> cuts;              ///< likewise; together with the methods one or more
    std::uint32_t interval = 0;       ///< frames per scene; above 0 exactly when the interval is a method
    std::vector<std::uint32_t> marks; ///< positions of manual scenes: ascending, without duplicates
    bool readTimecode = false;
    ParameterChoice parameters;     ///< of the video method
    TransitionChoice transitions{}; ///< likewise

    [[nodiscard]] bool Uses(KxDetectionMethod method) const;
    /// For all that finds scenes the word that tells so: methods first, then cuts, then fades and dissolves.
    [[nodiscard]] std::vector<std::string> Words() const;
    /// With `separator` between them.
    [[nodiscard]] std::string WordList(const char* separator) const;
};

} // namespace scenedetect
