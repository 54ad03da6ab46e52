// Where the path of an output leads: through symbolic links, and to what is not a file.
#pragma once

#include <filesystem>
#include <string>

namespace scenedetect {

/// What to do with a file that is there already.
enum class Existing { Replace, Keep };

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

[[nodiscard]] inline std::string PathIn(const std::string& folder, const std::string& name) {
    return (std::filesystem::path(folder) / name).native();
}

/// For people: "-" is the standard output.
[[nodiscard]] std::string NameOfOutput(const std::string& path);

/// Throws HostError: "PATH: cannot be written: " with the text of the system's error and, where that helps,
/// what to do; for EEXIST that the file is there.
[[noreturn]] void FailToWrite(const std::string& path, int code);

} // namespace scenedetect
