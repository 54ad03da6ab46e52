// What is made of the scenes of a run.
#pragma once

#include "products/clips/ClipSettings.h"
#include "products/stills/PictureSettings.h"

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
    std::string reportPath;
    bool reportLinksFilm = false;
    std::string tapeLogPath;
    std::string statsPath;
    ClipSettings clips;
    PictureSettings pictures;
    bool printsScenes = true; ///< on the standard output, which none of the above uses then
};

} // namespace scenedetect
