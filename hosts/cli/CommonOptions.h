// The options that all hosts have, and the reading of a command line.
#pragma once

#include "running/detection/DetectionSettings.h"

#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace CLI {
class App;
} // namespace CLI

namespace scenedetect {

inline constexpr int kExitSuccess = 0;
inline constexpr int kExitFailure = 1;
inline constexpr int kExitUsage = 2;
inline constexpr int kExitPartial = 3;

/// Where the values of the common options go. File names are UTF-8 (off Windows: as they were given).
struct CommonOptions {
    DetectionSettings& detection;
    std::string& xmlPath;             ///< scene-list file; empty: none
    std::vector<std::string>& inputs; ///< one or more
};

/// What a configuration file says of one option.
struct Setting {
    std::string name; ///< of the option, without dashes
    std::vector<std::string> values;
    std::string file;
    int line = 1;
};

/// A program and its command line. What the references lead to must outlive it.
struct HostProgram {
    std::string name;
    std::string description;
    std::string notes;     ///< of the help text: input and output
    std::string exitNotes; ///< and what the exit codes mean
    CommonOptions common;
    bool takesMany = false; ///< more than one method, more than one input
    /// Adds the program's own options, as often as a command line is parsed; may be empty.
    std::function<void(CLI::App&)> addOptions{};
    /// What is wrong with the values together, in one line, if anything; may be empty.
    std::function<std::string()> check{};
    std::string versionNotes{}; ///< lines that --version prints below the version
    /// Settings for options that are not on the command line, which has been read by now; HostError. May be
    /// empty.
    std::function<std::vector<Setting>()> readSettings{};
};

/// How a program ends that is not to run: help and version (standard output, 0), or one line about a wrong
/// command line (standard error, 2).
struct EarlyEnd {
    std::string text;
    int exitCode = kExitSuccess;
};

/// Prints its text where that belongs. Returns its exit code. HostError when the standard output can't be
/// written.
[[nodiscard]] int PrintAndEnd(const EarlyEnd& end);

/// Fills what the program's options refer to, checked for sense; nothing when the program is to run.
[[nodiscard]] std::optional<EarlyEnd> ParseCommandLine(const HostProgram& program, int argc,
                                                       const char* const* argv);

} // namespace scenedetect
