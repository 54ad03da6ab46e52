// What the command line asks to be made of the scenes, and of which part of the input.
#pragma once

#include "hosts/kxscenes/PictureTaker.h"
#include "hosts/kxscenes/RunRange.h"
#include "hosts/shared/ParameterOptions.h"

#include <cstdint>
#include <string>
#include <vector>

namespace CLI {
class App;
} // namespace CLI

namespace scenedetect {

struct Options;
struct OutputFormat;

/// Paths may be patterns (NamePattern) except folders; empty: not wanted.
struct Requests {
    struct List {
        std::string path;
        const OutputFormat* format = nullptr;
    };

    std::vector<std::string> listPaths; ///< as given; lists has them with their formats
    std::vector<std::string> formatNames;
    std::vector<List> lists;
    std::int64_t shortestScene = 0;

    std::string clipFolder;
    std::string container; ///< empty: raw DV, or as the source is
    PictureSettings pictures;
    std::vector<std::string> pictureWords;
    std::string pictureFormat = "png";
    std::string names = "{name}-{scene}"; ///< of clips and pictures
    bool replacesFiles = false;           ///< clips and pictures that are there already

    std::string reportPath;
    std::string tapeLogPath;
    std::string statsPath;
    std::string savedStatsPath; ///< to decide from, in place of an input
    ParameterChoice parameters;

    RangeChoice range;
    std::string start;
    std::string end;
    std::string duration;
};

/// Adds the options that fill `requests`, which must outlive the parsing of `app`.
void AddRequestOptions(CLI::App& app, Requests& requests);

/// Completes the record once everything was parsed. What is wrong, in one line; empty when nothing is.
[[nodiscard]] std::string CheckRequests(Requests& requests, const Options& options);

/// Of the help text: what the options above need said about them.
extern const char* const kRequestNotes;

} // namespace scenedetect
