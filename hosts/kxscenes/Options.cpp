#include "hosts/kxscenes/Options.h"

#include <CLI/CLI.hpp>

#include <algorithm>
#include <limits>
#include <map>
#include <utility>

namespace scenedetect {
namespace {

constexpr const char* kDescription =
    "Finds the scenes of a video file: prints one CSV line a scene, and on request writes a scene list.";

constexpr const char* kFooter = R"(
Methods:
  video      picture changes (the default)
  timestamp  jumps of more than one second in the recording time of DV frames; DV input only
  interval   every N-th frame, with --interval N
  manual     only the marked positions
Every run also has a scene at its first frame. Under "video" a cut at frame 1 or in the last two frames is
not reported: a frame is judged by its two neighbours on either side.

Input: any file that FFmpeg's libraries read. DV frames and the uncompressed frames of AVI files are
examined as they are, everything else is decoded. A damaged or missing frame is skipped with a warning.

Output: a header line, then a line a scene: scene,frame,timecode,seconds. "scene" counts from 1, "frame" is
the frame of the file, from 0. In files of constant rate frames that were dropped while recording count too;
in files of variable rate frames are the pictures in their order, timecode and seconds the time stamps.
Positions of --mark and of the scene list count the pictures that are there.

Ctrl-C ends the run early: the scenes so far are printed and written. A second one stops at once.
Exit codes: 0 done (also when the input breaks off: a warning says so), 1 the input cannot be read or an
output not be written, 2 wrong command line.)";

// One more than the last position that still leaves "video" its two frames of look-ahead in 31 bits.
constexpr std::uint32_t kMarkLimit = std::numeric_limits<std::int32_t>::max() - 2;

std::string OneLine(std::string text) {
    std::replace(text.begin(), text.end(), '\n', ' ');
    return "kxscenes: " + text + " (see kxscenes --help)\n";
}

CommandLine WrongUsage(const std::string& what) {
    return {std::nullopt, OneLine(what), kExitUsage};
}

} // namespace

CommandLine ParseCommandLine(int argc, const char* const* argv) {
    Options options;
    CLI::App app(kDescription, "kxscenes");
    app.footer(kFooter);
    app.set_version_flag("--version", std::string("kxscenes ") + KXSCENES_VERSION,
                         "Print the version and exit");

    const std::map<std::string, KxDetectionMethod> methods = {{"timestamp", KxMethodTimestamp},
                                                              {"video", KxMethodVideo},
                                                              {"interval", KxMethodInterval},
                                                              {"manual", KxMethodManual}};
    std::string method = "video";
    app.add_option("--method", method, "How scenes are found")
        ->type_name("timestamp|video|interval|manual")
        ->check([&methods](const std::string& word) {
            return methods.count(word) ? "" : "no such method: " + word;
        });
    auto* interval =
        app.add_option("--interval", options.interval, "Frames per scene; required with --method interval")
            ->type_name("N")
            ->check(CLI::Range(1u, static_cast<unsigned>(std::numeric_limits<std::int32_t>::max())));
    app.add_option("--mark", options.marks, "Scenes at these positions, whatever the method")
        ->type_name("N[,N...]")
        ->delimiter(',')
        ->allow_extra_args(false)
        ->take_all()
        ->check(CLI::Range(0u, kMarkLimit));
    app.add_flag("--timecode", options.readTimecode, "Read DV timecode and report where it starts");
    auto* xml =
        app.add_option("--xml", options.xmlPath, "Write the scene list to this file when the run ends")
            ->type_name("FILE");
    app.add_option("INPUT", options.input, "The video file")->required()->type_name("");

    try {
        app.parse(argc, argv);
    } catch (const CLI::CallForHelp&) {
        return {std::nullopt, app.help(), kExitSuccess};
    } catch (const CLI::CallForVersion&) {
        return {std::nullopt, app.version() + "\n", kExitSuccess};
    } catch (const CLI::ParseError& error) {
        return WrongUsage(error.what());
    }

    options.method = methods.at(method);
    if (options.method == KxMethodInterval && interval->count() == 0)
        return WrongUsage("--method interval needs --interval N");
    if (options.method != KxMethodInterval && interval->count() != 0)
        return WrongUsage("--interval goes with --method interval only");
    if (options.input.empty() || (xml->count() != 0 && options.xmlPath.empty()))
        return WrongUsage("a file name is empty");
    std::sort(options.marks.begin(), options.marks.end());
    options.marks.erase(std::unique(options.marks.begin(), options.marks.end()), options.marks.end());
    return {std::move(options), "", kExitSuccess};
}

} // namespace scenedetect
