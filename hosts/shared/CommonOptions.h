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
    std::vector<KxDetectionMethod> methods; ///< one or more, each once, in the order of the command line
    std::uint32_t interval = 0;       ///< frames per scene; above 0 exactly when the interval is a method
    std::vector<std::uint32_t> marks; ///< positions of manual scenes: ascending, without duplicates
    bool readTimecode = false;
    std::string xmlPath;             ///< scene-list file; empty: none
    std::vector<std::string> inputs; ///< one or more
};

/// The word that the command line has for a method.
[[nodiscard]] std::string MethodWord(KxDetectionMethod method);
[[nodiscard]] std::optional<KxDetectionMethod> MethodOf(const std::string& word);

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

/// What a configuration file says of one option.
struct Setting {
    std::string name; ///< of the option, without dashes
    std::vector<std::string> values;
    std::string file;
    int line = 1;
};

/// What a program's own part of its command line is.
struct HostProgram {
    std::string name;
    std::string description;
    std::string notes;                                ///< of the help text: input and output
    bool takesMany = false;                           ///< more than one method, more than one input
    std::function<void(CLI::App&)> addOptions;        ///< called for each table; may be empty
    std::function<std::string(const Options&)> check; ///< what is wrong, if anything; may be empty
    std::string versionNotes{};                       ///< lines that --version prints below the version
    /// Settings for options that are not on the command line, which has been read by now; HostError. May be
    /// empty.
    std::function<std::vector<Setting>()> readSettings{};
};

[[nodiscard]] CommandLine ParseCommandLine(const HostProgram& program, int argc, const char* const* argv);

} // namespace scenedetect
