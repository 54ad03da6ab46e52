// What is made of the scenes of a run.
#pragma once

#include "products/cutting/ClipSettings.h"
#include "products/stills/PictureSettings.h"

#include <algorithm>
#include <cstdint>
#include <string>
#include <vector>

namespace scenedetect {

struct OutputFormat;

/// Empty paths: not wanted. For a whole command paths are patterns (NamePattern), for one run they are
/// settled.
struct OutputSettings {
    struct List {
        std::string path; ///< "-" is the standard output
        const OutputFormat* format = nullptr;
    };

    std::vector<List> lists;
    std::int64_t shortestScene = 0; ///< in frames, of lists and the report
    std::string reportPath;
    std::string tapeLogPath;
    std::string statsPath;
    ClipSettings clips;
    PictureSettings pictures;

    /// Whether the standard output is one of the lists, so that scenes are not printed there.
    [[nodiscard]] bool WritesToStandardOutput() const {
        return std::any_of(lists.begin(), lists.end(), [](const List& list) { return list.path == "-"; });
    }
};

} // namespace scenedetect
