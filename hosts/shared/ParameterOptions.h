// The parameters of the picture comparison as a host's user sets them: from the command line to the filter.
#pragma once

#include "engine/DetectionParameters.h"
#include "scenes/IKxSceneDetect.h"

#include <array>
#include <cstdint>
#include <optional>

namespace CLI {
class App;
} // namespace CLI

namespace scenedetect {

/// The values that were given, each within its range, in the order of KxDetectionParameter.
struct ParameterChoice {
    std::array<std::optional<std::int32_t>, kDetectionParameters.size()> values{};

    /// `base` with the given values in place of its own.
    [[nodiscard]] DetectionParameters On(DetectionParameters base) const;
    [[nodiscard]] bool IsEmpty() const { return *this == ParameterChoice{}; }
    friend bool operator==(const ParameterChoice&, const ParameterChoice&) = default;
};

/// Adds one option for each parameter, with its range, its default and its effect in the help text. `choice`
/// is filled when `app` parses, and must outlive that.
void AddParameterOptions(CLI::App& app, ParameterChoice& choice);

/// Sets what was given, for runs that begin afterwards. HostError when the filter refuses.
void ApplyParameters(IKxSceneDetectTuning& tuning, const ParameterChoice& choice);

} // namespace scenedetect
