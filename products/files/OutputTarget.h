// Where the path of an output leads: through symbolic links, and to what is not a file.
#pragma once

#include "reading/base/FilePath.h"

#include <filesystem>
#include <string>

namespace scenedetect {

/// What to do with a file that is there already.
enum class Existing { Replace, Keep };

/// Descriptors of the standard streams.
inline constexpr int kStandardOutput = 1;
inline constexpr int kStandardError = 2;

struct OutputTarget {
    enum class Kind {
        File,       ///< a regular file, or none yet
        Descriptor, ///< one of this process, by number
        Device,     ///< a pipe or a device with a name
    };
    Kind kind = Kind::File;
    int descriptor = -1;
    std::filesystem::path file; ///< where symbolic links lead
};

/// "-" and the system's names of the standard streams lead to descriptors. HostError for folders, for a file
/// that is there under `Keep`, and for what the user may not write.
[[nodiscard]] OutputTarget FindOutputTarget(const std::string& path, Existing existing);

/// For people: "-" is the standard output.
[[nodiscard]] inline std::string NameOfOutput(const std::string& path) {
    return path == "-" ? "standard output" : path;
}

/// Throws HostError: "PATH: cannot be written: " with the text of the system's error of this number (errno,
/// or on Windows GetLastError) and, where that helps, what to do; where a file is there already, that it is.
[[noreturn]] void FailToWrite(const std::string& path, int code);

} // namespace scenedetect
