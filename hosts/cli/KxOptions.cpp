#include "hosts/cli/KxOptions.h"

#include "hosts/cli/ConfigFile.h"
#include "hosts/cli/MediaLibraries.h"
#include "hosts/cli/OutputOptions.h"
#include "platform/UsableCores.h"

#include <CLI/CLI.hpp>

#include <memory>

namespace scenedetect {
namespace {

constexpr const char* kDescription =
    "Finds the scenes of video files: prints one CSV line a scene, and on request writes scene lists.";

constexpr const char* kNotes = R"(
Several methods find their scenes side by side in one pass over the file; the column "method" then
says which found a scene ("timestamp+video": both). --mark goes to all of them. A method that does
not take the video of a file is skipped there with a warning, unless none does.

A DV tape tells itself where something begins; --cut-at takes that for scenes, beside those of the
methods or without them: recordings (the date or the time of day does not go on; midnight is no
such place), record-flag (the recorder's start mark), record-stop (the frame after its stop mark),
timecode (a jump), aspect, audio (sampling rate, bits, channels), lines (525 or 625). "method" names
these, too. --xml has the methods' only.

--scenes finds nothing: the scenes are those of a list (JSON and CSV of this program, CSV of others,
starts one a line, EDL), from their starts to their ends. {name} in its name is the input's.
)";

constexpr const char* kFrameNotes = R"(, or "-" for the standard input, of which each scene is
printed as soon as it can be known. A folder stands for the video files in it and its folders. DV
frames and the uncompressed frames of AVI files are examined as they are, without decoding. A frame
that is not whole is left out with a warning; of these each of the first ten gets a line.

Output: a header line, then a line a scene: scene,frame,timecode,seconds. "scene" counts from 1,
"frame" is the frame of the file, from 0. In files of constant rate frames that were dropped while
recording count too; in files of variable rate frames are the pictures in their order, timecode and
seconds the time stamps. Positions of --mark and of the scene list count the pictures that are
there. Of several files the scenes are printed in the order of the files, each line beginning with
the file's name (column "file").
)";

constexpr const char* kExitNotes =
    R"(Exit codes: 0 done, 1 an input cannot be read or an output not be written (then lists, logs and
report of that input keep what they had, and clips that were whole stay), 2 wrong command line or
configuration, 3 an input ends early, 129, 130 and 143 stopped by a hang-up, Ctrl-C or a kill (what
is written after this and 3 is partial), 141 nobody reads the standard output any more. Of several
inputs the worst counts: 1, then 129 and above, then 3; the others are run all the same.)";

std::string CheckFileName(const std::string& name) {
    return name.empty() ? "a file name is empty" : "";
}

constexpr const char* kScenes = "scenes";

void AddCutOption(CLI::App& app, KxOptions& options) {
    std::string names = kScenes;
    for (std::size_t i = 0; i < kTapeCuts; ++i)
        names += '|' + TapeCutOption(static_cast<TapeCut>(i));
    std::vector<TapeCut>& cuts = options.batch.detection.cuts;
    const auto setCuts = [&options, &cuts](const std::vector<std::string>& words) {
        options.findsScenes = std::ranges::count(words, kScenes) != 0;
        cuts.clear();
        for (const std::string& word : words)
            if (const auto cut = TapeCutOf(word); cut && std::ranges::count(cuts, *cut) == 0)
                cuts.push_back(*cut);
    };
    app.add_option_function<std::vector<std::string>>(
           "--cut-at", setCuts,
           "Where scenes begin: where the method finds them, which is the default, and where a DV tape "
           "tells something new; several side by side")
        ->type_name(names)
        ->delimiter(',')
        ->allow_extra_args(false)
        ->take_all()
        ->check([](const std::string& word) {
            return word == kScenes || TapeCutOf(word) ? "" : "nothing to cut at: " + word;
        })
        ->group("Detection");
}

// What --cut-at leaves of the methods, and what goes with them.
std::string SettleMethods(KxOptions& options) {
    if (options.findsScenes)
        return "";
    DetectionSettings& detection = options.batch.detection;
    detection.methods.clear();
    return options.batch.xmlPath.empty() && detection.marks.empty() && !detection.readTimecode
               ? ""
               : "--xml, --mark and --timecode need the methods: add scenes to --cut-at";
}

void AddRunOptions(CLI::App& app, KxOptions& options) {
    app.add_option("--jobs", options.batch.jobs,
                   "Files that are read at the same time; as many as it may use cores unless told")
        ->type_name("N")
        ->check(CLI::Range(1, 1024))
        ->group("General");
    const auto setDecoding = [&options](const std::string& word) {
        options.batch.decodesFast = word == "fast";
    };
    app.add_option_function<std::string>(
           "--decode", setDecoding,
           "fast: use the decoder's shortcuts for the search, such as smaller pictures; what is made of "
           "the scenes is not affected; exact unless told")
        ->type_name("exact|fast")
        ->check(CLI::IsMember({"exact", "fast"}))
        ->group("General");
}

void AddMessageOptions(CLI::App& app, KxOptions& options) {
    CLI::Option* quiet =
        app.add_flag("-q,--quiet", options.isQuiet, "Print errors, and no warning, summary or progress")
            ->group("General");
    app.add_flag("-v,--verbose", options.isVerbose, "Tell of each input how it is read, and how fast")
        ->group("General")
        ->excludes(quiet);
}

void AddConfigOptions(CLI::App& app, KxOptions& options) {
    CLI::Option* config =
        app.add_option("--config", options.batch.configPath,
                       "Read options from this file instead of kxscenes/kxscenes.conf in the user's "
                       "configuration folder; lines such as method=video, without dashes")
            ->type_name("FILE")
            ->configurable(false)
            ->check(CheckFileName)
            ->group("General");
    app.add_flag("--no-config", options.ignoresConfig, "Read no configuration file")
        ->configurable(false)
        ->excludes(config)
        ->group("General");
}

void RefuseLacked(CLI::App& app) {
    for (const LackedOption& each : LackedOptions())
        app.get_option(each.name)->group("")->check([&each](const std::string&) -> std::string {
            // The library knows no names of what is not in the help text.
            throw CLI::ParseError(each.name + std::string(": ") + each.advice,
                                  CLI::ExitCodes::ValidationError);
        });
}

} // namespace

HostProgram KxProgram(KxOptions& options) {
    BatchSettings& batch = options.batch;
    batch.jobs = UsableCores();
    const auto outputs = std::make_shared<OutputOptions>(batch);
    HostProgram program{"kxscenes",
                        kDescription,
                        std::string(kNotes) + kInputNotes + kFrameNotes + OutputNotes(),
                        kExitNotes,
                        {batch.detection, batch.xmlPath, batch.inputs},
                        true};
    program.versionNotes = LibraryNotes();
    program.addOptions = [&options, outputs](CLI::App& app) {
        AddCutOption(app, options);
        outputs->AddTo(app);
        AddRunOptions(app, options);
        AddMessageOptions(app, options);
        AddConfigOptions(app, options);
        RefuseLacked(app);
    };
    program.check = [&options, outputs] {
        const std::string wrong = SettleMethods(options);
        return wrong.empty() ? outputs->Check() : wrong;
    };
    program.readSettings = [&options] {
        std::string& path = options.batch.configPath;
        if (path.empty() && !options.ignoresConfig)
            path = UserConfigFile();
        return path.empty() ? std::vector<Setting>() : ReadConfigFile(path);
    };
    return program;
}

std::optional<EarlyEnd> ParseCommandLine(int argc, const char* const* argv, KxOptions& options) {
    return ParseCommandLine(KxProgram(options), argc, argv);
}

} // namespace scenedetect
