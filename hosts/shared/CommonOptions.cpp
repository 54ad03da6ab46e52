#include "hosts/shared/CommonOptions.h"

#include <CLI/CLI.hpp>

#include <algorithm>
#include <limits>
#include <map>
#include <utility>

namespace scenedetect {
namespace {

constexpr const char* kMethodNotes = R"(
Methods:
  video      picture changes (the default)
  timestamp  jumps of more than one second in the recording time of DV frames; DV input only
  interval   every N-th frame, with --interval N
  manual     only the marked positions
Every run also has a scene at its first frame. Under "video" a cut at frame 1 or in the last two frames is
not reported: a frame is judged by its two neighbours on either side.
)";

constexpr const char* kEndingNotes = R"(
Ctrl-C ends the run early: the scenes so far are printed and written. A second one stops at once.
Exit codes: 0 done (also when the input breaks off: a warning says so), 1 the input cannot be read or an
output not be written, 2 wrong command line.)";

// One more than the last position that still leaves "video" its two frames of look-ahead in 31 bits.
constexpr std::uint32_t kMarkLimit = std::numeric_limits<std::int32_t>::max() - 2;

// What CLI11 doesn't see: options that do not go together.
std::string FindContradiction(const CLI::App& app, const Options& options) {
    const bool isIntervalGiven = app.count("--interval") != 0;
    if (options.method == KxMethodInterval && !isIntervalGiven)
        return "--method interval needs --interval N";
    if (options.method != KxMethodInterval && isIntervalGiven)
        return "--interval goes with --method interval only";
    if (options.input.empty() || (app.count("--xml") != 0 && options.xmlPath.empty()))
        return "a file name is empty";
    return "";
}

CommandLine WrongUsage(const HostProgram& program, const std::string& what) {
    std::string line = program.name + ": " + what + " (see " + program.name + " --help)";
    std::replace(line.begin(), line.end(), '\n', ' ');
    return {std::nullopt, line + '\n', kExitUsage};
}

} // namespace

CommandLine ParseCommandLine(const HostProgram& program, int argc, const char* const* argv) {
    Options options;
    CLI::App app(program.description, program.name);
    // A name that begins with a slash is a file on every system.
    app.allow_windows_style_options(false);
    app.footer(kMethodNotes + program.notes + kEndingNotes);
    app.set_version_flag("--version", program.name + ' ' + HOSTS_VERSION, "Print the version and exit");

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
    app.add_option("--xml", options.xmlPath, "Write the scene list to this file when the run ends")
        ->type_name("FILE");
    if (program.addOptions)
        program.addOptions(app);
    app.add_option("INPUT", options.input, "The video file")->required()->type_name("");

    try {
        app.parse(argc, argv);
    } catch (const CLI::CallForHelp&) {
        return {std::nullopt, app.help(), kExitSuccess};
    } catch (const CLI::CallForVersion&) {
        return {std::nullopt, app.version() + "\n", kExitSuccess};
    } catch (const CLI::ParseError& error) {
        return WrongUsage(program, error.what());
    }

    options.method = methods.at(method);
    std::string wrong = FindContradiction(app, options);
    if (wrong.empty() && program.check)
        wrong = program.check(options);
    if (!wrong.empty())
        return WrongUsage(program, wrong);
    std::sort(options.marks.begin(), options.marks.end());
    options.marks.erase(std::unique(options.marks.begin(), options.marks.end()), options.marks.end());
    return {std::move(options), "", kExitSuccess};
}

} // namespace scenedetect
