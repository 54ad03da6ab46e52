#include "hosts/kxscenes/Requests.h"

#include "hosts/cutting/Container.h"
#include "hosts/outputs/OutputFormats.h"
#include "hosts/shared/CommonOptions.h"
#include "hosts/shared/DvPacks.h"
#include "hosts/tape/TapeLogText.h"

#include <CLI/CLI.hpp>

#include <algorithm>
#include <limits>

namespace scenedetect {
namespace {

std::string FormatNames() {
    std::string names;
    for (const OutputFormat& format : OutputFormats())
        names += (names.empty() ? "" : "|") + std::string(format.name);
    return names;
}

std::string CheckPictureAt(const std::string& word) {
    return ParsePictureAt(word) ? "" : "no such picture of a scene: " + word;
}

CLI::Option* AddPath(CLI::App& app, const char* name, std::string& path, const char* kind,
                     const std::string& help, const char* group) {
    return app.add_option(name, path, help)
        ->type_name(kind)
        ->group(group)
        ->check([](const std::string& text) { return text.empty() ? "a file name is empty" : ""; });
}

CLI::Option* AddPatternPath(CLI::App& app, const char* name, std::string& path, const std::string& help,
                            const char* group) {
    return AddPath(app, name, path, "FILE", help, group)->check(NamePattern::ErrorIn);
}

void AddLists(CLI::App& app, Requests& requests) {
    constexpr const char* kGroup = "Output";
    app.add_option("-o,--output", requests.listPaths,
                   "Write the scenes to this file, in the format that its suffix says; as often as wanted")
        ->type_name("FILE")
        ->group(kGroup)
        ->allow_extra_args(false)
        ->take_all()
        ->check(NamePattern::ErrorIn);
    app.add_option("--format", requests.formatNames,
                   "The format of the -o at the same place, whatever its suffix (one for all if given once)")
        ->type_name(FormatNames())
        ->group(kGroup)
        ->delimiter(',')
        ->allow_extra_args(false)
        ->take_all()
        ->check([](const std::string& name) { return FormatByName(name) ? "" : UnknownFormatText(name); });
    app.add_option("--min-scene", requests.shortestScene,
                   "Merge scenes of fewer frames into the one before, in what -o and --report write")
        ->type_name("N")
        ->group(kGroup)
        ->check(CLI::Range(0, std::numeric_limits<std::int32_t>::max()));
    AddPatternPath(app, "--report", requests.reportPath, "Write a report as one HTML page", kGroup);
    AddPatternPath(app, "--tape-log", requests.tapeLogPath,
                   "Write what a DV tape says of its recordings, and its faults (.csv or .json). Two-digit "
                   "years from " +
                       std::to_string(kFirstYearOf1900s) + " on are taken for 19yy",
                   kGroup);
}

void AddClips(CLI::App& app, Requests& requests) {
    constexpr const char* kGroup = "Clips and pictures";
    AddPath(app, "--split", requests.clipFolder, "DIR", "Cut the input into a file a scene, in this folder",
            kGroup);
    app.add_option("--container", requests.container,
                   "Container of the clips, with sound; raw DV, or that of the source, unless told")
        ->type_name("avi|mov|mkv|mp4")
        ->group(kGroup)
        ->check(CLI::IsMember({"avi", "mov", "mkv", "mp4"}));
    AddPath(app, "--pictures", requests.pictures.folder, "DIR",
            "Write a picture of each scene to this folder", kGroup);
    app.add_option("--picture-at", requests.pictureWords,
                   "Which frame of a scene: its first, middle or last, or the N-th behind the first; several "
                   "make several pictures")
        ->type_name("start|middle|end|N")
        ->group(kGroup)
        ->delimiter(',')
        ->allow_extra_args(false)
        ->take_all()
        ->check(CheckPictureAt);
    app.add_option("--picture-width", requests.pictures.width,
                   "Width of the pictures; that of the frame on the screen unless told")
        ->type_name("PIXELS")
        ->group(kGroup)
        ->check(CLI::Range(1, 16384));
    app.add_option("--picture-format", requests.pictureFormat, "Kind of the pictures; png unless told")
        ->type_name("png|jpeg|bmp")
        ->group(kGroup)
        ->check([](const std::string& name) {
            return StillFormatOf(name) ? "" : "no such picture format: " + name;
        });
    app.add_option("--names", requests.names, "Names of clips and pictures; \"{name}-{scene}\" unless told")
        ->type_name("PATTERN")
        ->group(kGroup)
        ->check(NamePattern::ErrorIn);
    app.add_flag("--force", requests.replacesFiles, "Overwrite clips and pictures that are there already")
        ->group(kGroup);
}

void AddRange(CLI::App& app, Requests& requests) {
    constexpr const char* kGroup = "Part of the input";
    const auto add = [&app](const char* name, std::string& text, const char* help) {
        return app.add_option(name, text, help)->type_name("TIME")->group(kGroup)->check(TimePointFault);
    };
    add("--start", requests.start, "Leave out what is before; positions stay those of the file");
    CLI::Option* end = add("--end", requests.end, "Leave out this and what is behind it");
    add("--duration", requests.duration, "Leave out what is so long after the start, or later")
        ->excludes(end);
}

void AddTuning(CLI::App& app, Requests& requests) {
    constexpr const char* kGroup = "Tuning --method video";
    AddParameterOptions(app, requests.parameters);
    AddPatternPath(app, "--stats", requests.statsPath, "Write the figures of each frame (CSV)", kGroup);
    AddPath(app, "--from-stats", requests.savedStatsPath, "FILE",
            "Find the scenes again from figures that --stats has written, in place of an input", kGroup);
}

std::string MatchFormats(Requests& requests) {
    const std::size_t formats = requests.formatNames.size();
    if (formats > 1 && formats != requests.listPaths.size())
        return "give --format once, or once for each -o";
    if (formats != 0 && requests.listPaths.empty())
        return "--format goes with -o FILE";
    for (std::size_t i = 0; i < requests.listPaths.size(); ++i) {
        const std::string& path = requests.listPaths[i];
        const OutputFormat* format =
            formats != 0 ? FormatByName(requests.formatNames[formats > 1 ? i : 0]) : FormatBySuffix(path);
        if (!format)
            return UnknownSuffixText(path);
        requests.lists.push_back({path, format});
    }
    return "";
}

bool Has(const Options& options, KxDetectionMethod method) {
    return std::count(options.methods.begin(), options.methods.end(), method) != 0;
}

// Options that want others, or a file that can be read twice.
std::string FindMissing(const Requests& requests, const Options& options) {
    const bool readsStream = std::count(options.inputs.begin(), options.inputs.end(), "-") != 0;
    const bool wantsVideo = !requests.parameters.IsEmpty() || !requests.statsPath.empty();
    if (const std::string wrong = options.xmlPath.empty() ? "" : NamePattern::ErrorIn(options.xmlPath);
        !wrong.empty())
        return "--xml " + options.xmlPath + ": " + wrong;
    if (!requests.tapeLogPath.empty() && !TapeLogFormatOf(requests.tapeLogPath))
        return "--tape-log writes .csv and .json: " + requests.tapeLogPath;
    if (readsStream && !requests.pictures.folder.empty())
        return "--pictures reads its input twice, so it must be a file";
    if (wantsVideo && !Has(options, KxMethodVideo))
        return "--stats and the parameters go with --method video only";
    if (requests.container != "" && requests.clipFolder.empty())
        return "--container goes with --split DIR";
    if (!requests.pictureWords.empty() && requests.pictures.folder.empty())
        return "--picture-at goes with --pictures DIR";
    return "";
}

// Without the input only its scenes are known.
std::string FindBeyondStats(const Requests& requests, const Options& options) {
    if (requests.savedStatsPath.empty())
        return options.inputs.empty() ? "INPUT is required" : "";
    if (!options.inputs.empty())
        return "--from-stats takes no input";
    const bool wantsFrames = !requests.clipFolder.empty() || !requests.pictures.folder.empty() ||
                             !requests.tapeLogPath.empty() || !requests.statsPath.empty() ||
                             !options.xmlPath.empty() || !options.marks.empty() || options.readTimecode ||
                             options.methods != std::vector{KxMethodVideo} || !requests.start.empty() ||
                             !requests.end.empty() || !requests.duration.empty();
    return wantsFrames ? "--from-stats goes with -o, --report, --min-scene and the parameters only" : "";
}

} // namespace

const char* const kRequestNotes = R"(
Names: file names and --names may have fields in braces: {name} is the input's name without folder
and suffix, {method} what found the scene; in names of clips and pictures also {scene} (from 1,
four digits), {frame} (seven digits), and {timecode}, {date} and {time} as DV frames carry them.
{{ and }} stand for single braces. No file is written twice in one run. "-" is the standard output,
on which the scenes are not printed then.

Clips of DV are the frames of the tape, byte for byte; other codecs are cut without encoding, from
the nearest key frame on, which a line tells. A clip that is there already is kept unless --force.

Times: frames (75), seconds (2.5s), HH:MM:SS.nnn, or timecode HH:MM:SS:FF (HH:MM:SS;FF with
drop-frame) counted from the first frame.
)";

void AddRequestOptions(CLI::App& app, Requests& requests) {
    AddLists(app, requests);
    AddClips(app, requests);
    AddRange(app, requests);
    AddTuning(app, requests);
}

std::string CheckRequests(Requests& requests, const Options& options) {
    for (const auto& [text, point] :
         {std::pair{&requests.start, &requests.range.start}, std::pair{&requests.end, &requests.range.end},
          std::pair{&requests.duration, &requests.range.duration}})
        if (!text->empty())
            *point = ParseTimePoint(*text);
    for (const std::string& word : requests.pictureWords)
        requests.pictures.at.push_back(*ParsePictureAt(word));
    if (requests.pictures.at.empty())
        requests.pictures.at.push_back(*ParsePictureAt("start"));
    requests.pictures.format = *StillFormatOf(requests.pictureFormat);
    requests.pictures.names = requests.names;
    requests.pictures.replace = requests.replacesFiles;
    for (const std::string& wrong :
         {MatchFormats(requests), FindBeyondStats(requests, options), FindMissing(requests, options)})
        if (!wrong.empty())
            return wrong;
    return "";
}

} // namespace scenedetect
