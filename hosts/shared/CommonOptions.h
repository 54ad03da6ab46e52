// What every host is asked on its command line, as a plain record, and the reading of it.
#pragma once

#include "scenes/IKxSceneDetect.h"

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace CLI {
class App;
} // namespace CLI

namespace scenedetect {

/// What the user asked for; already checked for sense. File names are UTF-8 (off Windows: as they were
/// given).
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

/// What a program's own part of its command line is.
struct HostProgram {
    std::string name;
    std::string description;
    std::string notes;                                ///< of the help text: input and output
    std::function<void(CLI::App&)> addOptions;        ///< may be empty
    std::function<std::string(const Options&)> check; ///< what is wrong, if anything; may be empty
};

[[nodiscard]] CommandLine ParseCommandLine(const HostProgram& program, int argc, const char* const* argv);

} // namespace scenedetect
