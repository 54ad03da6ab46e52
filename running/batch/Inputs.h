// The files that the command line's inputs stand for.
#pragma once

#include <string>
#include <vector>

namespace scenedetect {

/// A folder stands for the video files in it and in its folders, known by their suffixes, in the order of
/// their names; everything else for itself. Links to folders are not followed. HostError when a folder cannot
/// be read or has none.
[[nodiscard]] std::vector<std::string> ExpandInputs(const std::vector<std::string>& inputs);

} // namespace scenedetect
