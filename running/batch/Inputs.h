// Which files the inputs of a command stand for.
#pragma once

#include <string>
#include <vector>

namespace scenedetect {

struct Input {
    std::string path;
    std::string fault; ///< why this folder gives no files; empty: it is one of them

    friend auto operator<=>(const Input&, const Input&) = default;
};

/// A folder stands for the video files in it and in its folders, known by their suffixes, in the order of
/// their names; a name with * or ? where no shell has expanded it for those that it
/// matches; everything else for itself. Links to folders are not followed. A folder that cannot be read
/// to its end, or that has no video file, is in its own place.
[[nodiscard]] std::vector<Input> ExpandInputs(const std::vector<std::string>& inputs);

} // namespace scenedetect
