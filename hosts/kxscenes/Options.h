// The command line of kxscenes as a plain record, and the reading of it.
#pragma once

#include "scenes/IKxSceneDetect.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace scenedetect {

/// What the user asked for; already checked for sense.
struct Options {
    KxDetectionMethod method = KxMethodVideo;
    std::uint32_t interval = 0;       ///< frames per scene; above 0 exactly when the method is the interval
    std::vector<std::uint32_t> marks; ///< positions of manual scenes: ascending, without duplicates
    bool readTimecode = false;
    std::string xmlPath; ///< scene-list file; empty: none
    std::string input;
};

inline constexpr int kExitSuccess = 0;
inline constexpr int kExitFailure = 1;
inline constexpr int kExitUsage = 2;

/// Either options, or a text to print and the exit code to end with: help and version (stdout, 0) or one
/// line about a wrong command line (stderr, 2).
struct CommandLine {
    std::optional<Options> options;
    std::string text;
    int exitCode = kExitSuccess;
};

[[nodiscard]] CommandLine ParseCommandLine(int argc, const char* const* argv);

} // namespace scenedetect
