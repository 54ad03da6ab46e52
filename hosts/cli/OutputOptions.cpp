#include "hosts/cli/OutputOptions.h"

#include "hosts/cli/MediaLibraries.h"
#include "hosts/cli/ParameterOptions.h"
#include "products/muxing/EncodeChoice.h"
#include "products/outputs/OutputFormats.h"
#include "products/tape/TapeLogText.h"
#include "reading/base/HostError.h"
#include "reading/dv/DvPacks.h"

#include <CLI/CLI.hpp>

#include <algorithm>

namespace scenedetect {
namespace {

std::string CheckPictureAt(const std::string& word) {
    return ParsePictureAt(word) ? "" : "no such picture of a scene: " + word;
}

std::string EmptyNameFault(const std::string& name) {
    return name.empty() ? "a file name is empty" : "";
}

CLI::Option* AddPath(CLI::App& app, const char* name, std::string& path, const char* kind,
                     const std::string& help, const char* group) {
    return app.add_option(name, path, help)->type_name(kind)->group(group)->check(EmptyNameFault);
}

CLI::Option* AddFolder(CLI::App& app, const char* name, std::string& path, const std::string& help,
                       const char* group) {
    return AddPath(app, name, path, "DIR", help, group)->check([](const std::string& text) {
        return text == "-" ? "a folder is wanted; one of that name is ./-" : "";
    });
}

CLI::Option* AddPatternPath(CLI::App& app, const char* name, std::string& path, const std::string& help,
                            const char* group) {
    return AddPath(app, name, path, "FILE", help, group)->check(NamePattern::ErrorIn);
}

constexpr const char* kNameNotes = R"(
Names: file names and --names may have fields in braces: {name} is the input's name without folder
and suffix, {method} what found the scene; in names of clips and pictures also {scene} (from 1,
four digits), {frame} (seven digits; of pictures their own), {timecode} (the source's, or counted
from the first frame), {date}, {time}, {aspect} and {audio} as DV frames carry them, and {title},
the scene's name in the list of --scenes. {{ and }} stand for single braces. Folders are made. No
file is written twice in one run. "-" is the standard output, for one output of one input; the
scenes are not printed then.
)";

constexpr const char* kTimeNotes = R"(
Times: frames (75), seconds (2.5s), HH:MM:SS.nnn, or timecode HH:MM:SS:FF (HH:MM:SS;FF with
drop-frame) counted from the first frame.
)";

} // namespace

std::string OutputNotes() {
    return std::string(kNameNotes) + kClipNotes + kTimeNotes;
}

void OutputOptions::AddLists(CLI::App& app) {
    constexpr const char* kGroup = "Output";
    AddPatternPath(app, "--scenes", m_settings.listPath,
                   "Read the scenes from this list (CSV, JSON or EDL) instead of finding them", "Detection");
    app.add_option("-o,--output", m_listPaths,
                   "Write the scenes to this file, in the format that its suffix says; as often as wanted")
        ->type_name("FILE")
        ->group(kGroup)
        ->allow_extra_args(false)
        ->take_all()
        ->check(NamePattern::ErrorIn);
    app.add_option("--format", m_formatNames,
                   "The format of the -o at the same place, whatever its suffix (one for all if given once)")
        ->type_name(FormatNames("|"))
        ->group(kGroup)
        ->delimiter(',')
        ->allow_extra_args(false)
        ->take_all()
        ->check([](const std::string& name) { return FormatByName(name) ? "" : UnknownFormatText(name); });
    SceneLength& length = m_settings.length;
    app.add_option_function<std::string>(
           "--min-scene", [&length](const std::string& text) { length.least = ParseTimePoint(text); },
           "Take shorter scenes for a part of the one before, everywhere but in --xml")
        ->type_name("TIME")
        ->group(kGroup)
        ->check(TimePointFault);
    const auto ruleOf = [](const std::string& word) { return std::ranges::find(kShortRules, word); };
    m_choosesRule = false;
    const auto setRule = [this, ruleOf](const std::string& word) {
        m_choosesRule = true;
        m_settings.length.rule = static_cast<ShortRule>(ruleOf(word) - kShortRules.begin());
    };
    app.add_option_function<std::string>(
           "--short-scenes", setRule,
           "What becomes of scenes shorter than --min-scene: they are merged into the one before, which is "
           "the "
           "default, dropped, so that their frames are in no scene, or only a last one is merged")
        ->type_name("merge|drop|merge-last")
        ->group(kGroup)
        ->check([ruleOf](const std::string& word) {
            return ruleOf(word) != kShortRules.end() ? "" : "nothing to do with short scenes: " + word;
        });
    AddPatternPath(app, "--report", m_settings.outputs.reportPath, "Write a report as one HTML page", kGroup);
    app.add_flag("--report-film", m_settings.outputs.reportLinksFilm,
                 "Let the report show the film itself, by a link to where the input lies beside it")
        ->group(kGroup);
    AddPatternPath(app, "--tape-log", m_settings.outputs.tapeLogPath,
                   "Write what a DV tape says of its recordings, and its faults (.csv or .json). Two-digit "
                   "years from " +
                       std::to_string(kFirstYearOf1900s) + " on are taken for 19yy",
                   kGroup);
}

void OutputOptions::AddClips(CLI::App& app) {
    const char* const kGroup = kClipGroup;
    ClipSettings& clips = m_settings.outputs.clips;
    PictureSettings& pictures = m_settings.outputs.pictures;
    AddFolder(app, "--split", clips.folder, "Cut the input into a file a scene, in this folder", kGroup);
    app.add_option("--container", clips.container,
                   "Container of the clips, with audio; raw DV, or that of the source, unless told")
        ->type_name("avi|mov|mkv|mp4")
        ->group(kGroup)
        ->check(CLI::IsMember({"avi", "mov", "mkv", "mp4"}));
    const auto setEncoder = [&clips](const std::string& text) { clips.encode = ParseEncodeChoice(text); };
    app.add_option_function<std::string>(
           "--split-encode", setEncoder,
           "Encode the video of the clips anew, exactly, with an encoder of FFmpeg's "
           "libraries (libx264:crf=16:preset=slow); audio is copied")
        ->type_name("CODEC[:OPTIONS]")
        ->group(kGroup)
        ->check(EncodeFault);
    AddFolder(app, "--pictures", pictures.folder, "Write a picture of each scene to this folder", kGroup);
    m_choosesPictures = false;
    const auto setMoments = [this, &pictures](const std::vector<std::string>& words) {
        m_choosesPictures = true;
        pictures.at.clear();
        for (const std::string& word : words)
            pictures.at.push_back(ParsePictureAt(word).value());
    };
    app.add_option_function<std::vector<std::string>>(
           "--picture-at", setMoments,
           "Which frame of a scene: its first, middle or last, or the N-th after the first; several "
           "make several pictures")
        ->type_name("start|middle|end|N")
        ->group(kGroup)
        ->delimiter(',')
        ->allow_extra_args(false)
        ->take_all()
        ->check(CheckPictureAt);
    app.add_option("--picture-width", pictures.width,
                   "Width of the pictures; that of the frame on the screen unless told")
        ->type_name("PIXELS")
        ->group(kGroup)
        ->check(CLI::Range(1, 16384));
    const auto setFormat = [&pictures](const std::string& name) {
        pictures.format = StillFormatOf(name).value();
    };
    app.add_option_function<std::string>("--picture-format", setFormat,
                                         "Kind of the pictures; png unless told")
        ->type_name("png|jpeg|bmp")
        ->group(kGroup)
        ->check([](const std::string& name) {
            return StillFormatOf(name) ? "" : "no such picture format: " + name;
        });
    const auto setNames = [&clips, &pictures](const std::string& pattern) {
        clips.names = pictures.names = NamePattern(pattern);
    };
    app.add_option_function<std::string>("--names", setNames,
                                         "Names of these files; \"{name}-{scene}\" unless told")
        ->type_name("PATTERN")
        ->group(kGroup)
        ->check(NamePattern::ErrorIn);
    app.add_flag("--force", m_overwrites, "Overwrite such files that are there already")
        ->group(kGroup);
}

void OutputOptions::AddRange(CLI::App& app) {
    constexpr const char* kGroup = "Part of the input";
    RangeChoice& range = m_settings.range;
    const auto add = [&app](const char* name, std::optional<TimePoint>& point, const char* help) {
        const auto set = [&point](const std::string& text) { point = ParseTimePoint(text); };
        return app.add_option_function<std::string>(name, set, help)
            ->type_name("TIME")
            ->group(kGroup)
            ->check(TimePointFault);
    };
    add("--start", range.start, "Leave out what is before; positions stay those of the file");
    CLI::Option* end = add("--end", range.end, "Leave out this and what comes after it");
    add("--duration", range.duration, "Leave out what is so long after the start, or later")->excludes(end);
    const auto setPart = [&range](const std::string& text) { range.part = ParsePartChoice(text).value(); };
    app.add_option_function<std::string>("--part", setPart,
                                         "Only measure the K-th of N parts, for --stats: --from-stats finds "
                                         "the scenes when all are there")
        ->type_name("K/N")
        ->group(kGroup)
        ->check([](const std::string& text) {
            return ParsePartChoice(text) ? "" : "no part: " + text + "; write K/N, such as 3/16";
        });
}

void OutputOptions::AddTuning(CLI::App& app) {
    constexpr const char* kGroup = "Tuning --method video";
    AddParameterOptions(app, m_settings.detection.parameters);
    AddTransitionOptions(app, m_settings.detection.transitions);
    AddPatternPath(app, "--stats", m_settings.outputs.statsPath, "Write the figures of each frame (CSV)",
                   kGroup);
    app.add_option("--from-stats", m_settings.savedStatsPaths,
                   "Find the scenes again from figures that --stats has written, in place of an input: of a "
                   "whole one, or of all its parts")
        ->type_name("FILE...")
        ->group(kGroup)
        ->check(EmptyNameFault);
    AddPath(
        app, "--fit", m_settings.fitPath, "FILE",
        "Find the parameters that give the scenes of this list (CSV, JSON or EDL) best, from --from-stats; "
        "those that are given stay",
        kGroup);
}

std::string OutputOptions::MatchFormats() {
    m_settings.outputs.lists.clear();
    const std::size_t formats = m_formatNames.size();
    if (formats > 1 && formats != m_listPaths.size())
        return "give --format once, or once for each -o";
    if (formats != 0 && m_listPaths.empty())
        return "--format goes with -o FILE";
    for (std::size_t i = 0; i < m_listPaths.size(); ++i) {
        const std::string& path = m_listPaths[i];
        const OutputFormat* format =
            formats != 0 ? FormatByName(m_formatNames[formats > 1 ? i : 0]) : FormatBySuffix(path);
        if (!format)
            return UnknownSuffixText(path);
        m_settings.outputs.lists.push_back({path, format});
    }
    return "";
}

// Options that want others, or a file that can be read twice.
std::string OutputOptions::FindMissing() const {
    const auto& [inputs, detection, xmlPath, range, length, outputs, listPath, savedStatsPaths, fitPath,
                 configPath, decodesFast, jobs] = m_settings;
    const bool readsStream = std::count(inputs.begin(), inputs.end(), "-") != 0;
    const bool wantsVideo =
        !detection.parameters.IsEmpty() || !detection.transitions.IsEmpty() || !outputs.statsPath.empty();
    if (const std::string wrong = xmlPath.empty() ? "" : NamePattern::ErrorIn(xmlPath); !wrong.empty())
        return "--xml " + xmlPath + ": " + wrong;
    if (!outputs.tapeLogPath.empty() && !TapeLogFormatOf(outputs.tapeLogPath))
        return "--tape-log writes .csv and .json: " + outputs.tapeLogPath;
    if (outputs.reportLinksFilm && outputs.reportPath.empty())
        return "--report-film goes with --report FILE";
    if (readsStream && outputs.reportLinksFilm)
        return "--report-film links to the input, so it must be a file";
    if (readsStream && !outputs.pictures.folder.empty())
        return "--pictures reads its input twice, so it must be a file";
    for (const OutputSettings::List& list : outputs.lists)
        if (readsStream && list.format->needsFile)
            return std::string(list.format->name) + " has to point to a file, so the input must be one";
    for (const PictureAt& at : outputs.pictures.at)
        if (std::ranges::count(outputs.pictures.at, at.word, &PictureAt::word) > 1)
            return "--picture-at " + at.word + " is given twice";
    if (wantsVideo && !detection.Uses(KxMethodVideo))
        return "--stats, --flashes, --fades, --dissolves and the parameters go with --method video only";
    if (!outputs.clips.container.empty() && outputs.clips.folder.empty())
        return "--container goes with --split DIR";
    if (m_choosesRule && !length.least)
        return "--short-scenes goes with --min-scene TIME";
    if (outputs.clips.encode.IsWanted() && outputs.clips.folder.empty())
        return "--split-encode goes with --split DIR";
    if (m_choosesPictures && outputs.pictures.folder.empty())
        return "--picture-at goes with --pictures DIR";
    return "";
}

bool OutputOptions::WantsFrames() const {
    const DetectionSettings& detection = m_settings.detection;
    const OutputSettings& outputs = m_settings.outputs;
    return !outputs.clips.folder.empty() || !outputs.pictures.folder.empty() ||
           !outputs.tapeLogPath.empty() || !m_settings.xmlPath.empty() || !detection.marks.empty() ||
           detection.readTimecode || detection.methods != std::vector{KxMethodVideo} ||
           !detection.cuts.empty() || m_settings.range.HasPoints();
}

// Without the input only its scenes are known.
std::string OutputOptions::FindBeyondStats() const {
    if (m_settings.savedStatsPaths.empty()) {
        if (!m_settings.fitPath.empty())
            return "--fit goes with --from-stats FILE";
        return m_settings.inputs.empty() ? "INPUT is required" : "";
    }
    if (!m_settings.inputs.empty())
        return "--from-stats takes no input";
    if (const auto& area = m_settings.detection.parameters.area; area && !area->IsInPercent())
        return "--from-stats knows no pictures, so --area is given in per cent";
    return WantsFrames() || m_settings.range.part.IsChosen() || m_settings.decodesFast
               ? "--from-stats goes with -o, --report, --stats, --fit, --min-scene, --short-scenes, "
                 "--flashes, "
                 "--fades, --dissolves and the parameters only"
               : "";
}

// Of a part only its figures are known.
std::string OutputOptions::FindBeyondPart() const {
    const OutputSettings& outputs = m_settings.outputs;
    if (!m_settings.range.part.IsChosen())
        return "";
    if (outputs.statsPath.empty())
        return "--part goes with --stats FILE";
    if (std::ranges::count(m_settings.inputs, "-") != 0)
        return "--part goes with files that have a name";
    return WantsFrames() || !outputs.lists.empty() || !outputs.reportPath.empty() ||
                   m_settings.length.least || !m_settings.detection.transitions.IsEmpty()
               ? "--part goes with --stats and the parameters only"
               : "";
}

// Nothing is found where scenes are read.
std::string OutputOptions::FindBeyondList() const {
    const auto& [inputs, detection, xmlPath, range, length, outputs, listPath, savedStatsPaths, fitPath,
                 configPath, decodesFast, jobs] = m_settings;
    const bool wantsFilter = !savedStatsPaths.empty() || !outputs.statsPath.empty() || !xmlPath.empty() ||
                             !detection.marks.empty() || detection.readTimecode ||
                             !detection.parameters.IsEmpty() || !detection.transitions.IsEmpty() ||
                             length.least || detection.methods != std::vector{KxMethodVideo} ||
                             !detection.cuts.empty();
    return !listPath.empty() && wantsFilter
               ? "--scenes goes with no option of finding scenes: they are those of the list"
               : "";
}

void OutputOptions::AddTo(CLI::App& app) {
    AddLists(app);
    AddClips(app);
    AddRange(app);
    AddTuning(app);
}

std::string OutputOptions::Check() {
    if (m_overwrites)
        m_settings.outputs.clips.existing = m_settings.outputs.pictures.existing = Existing::Replace;
    for (const std::string& wrong :
         {MatchFormats(), FindBeyondStats(), FindBeyondPart(), FindBeyondList(), FindMissing()})
        if (!wrong.empty())
            return wrong;
    return "";
}

} // namespace scenedetect
