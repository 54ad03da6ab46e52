#include "hosts/cli/OptionTable.h"

#include "hosts/cli/HelpFormatter.h"

#include <algorithm>
#include <limits>
#include <memory>
#include <utility>

namespace scenedetect {
namespace {

constexpr const char* kMethodNotes = R"(
Methods:
  video      picture changes (the default)
  timestamp  jumps of more than one second in the recording time of DV frames; DV input only
  interval   every N-th frame, with --interval N
  manual     only the marked positions
Every run also has a scene at its first frame. Under "video" a cut at frame 1 or in the last two
frames is not reported: a frame is judged by its two neighbours on either side.
)";

constexpr const char* kEndingNotes = R"(
Ctrl-C ends the run early: the scenes so far are printed and written. A second one stops at once.
)";

// One more than the last position that still leaves "video" its two frames of look-ahead in 31 bits.
constexpr std::uint32_t kMarkLimit = std::numeric_limits<std::int32_t>::max() - 2;

std::string VersionText(const HostProgram& program) {
    return program.name + ' ' + HOSTS_VERSION +
           (program.versionNotes.empty() ? "" : '\n' + program.versionNotes);
}

} // namespace

std::string ValueName(const CLI::Option& option) {
    // The library adds what validators are called, after a colon.
    const std::string name = option.get_type_name();
    return option.get_type_size() != 0 ? name.substr(0, name.find(':')) : "";
}

OptionTable::OptionTable(const HostProgram& program) : app(program.description, program.name) {
    // A name that begins with a slash is a file on every system.
    app.allow_windows_style_options(false);
    app.formatter(std::make_shared<HelpFormatter>());
    app.footer(kMethodNotes + program.notes + kEndingNotes + program.exitNotes);
    app.set_help_flag(); // comes last

    DetectionSettings& detection = program.common.detection;
    detection.methods = {KxMethodVideo};
    const auto setMethods = [&detection](const std::vector<std::string>& words) {
        detection.methods.clear();
        for (const std::string& word : words)
            if (const KxDetectionMethod method = MethodOf(word).value(); !detection.Uses(method))
                detection.methods.push_back(method);
    };
    app.add_option_function<std::vector<std::string>>(
           "--method", setMethods,
           program.takesMany ? "How scenes are found; several find them side by side"
                             : "How scenes are found")
        ->type_name("timestamp|video|interval|manual")
        ->delimiter(',')
        ->allow_extra_args(false)
        ->take_all()
        ->check([](const std::string& word) { return MethodOf(word) ? "" : "no such method: " + word; })
        ->group("Detection");
    app.add_option("--interval", detection.interval, "Frames per scene; required with --method interval")
        ->type_name("N")
        ->check(CLI::Range(1u, static_cast<unsigned>(std::numeric_limits<std::int32_t>::max())))
        ->group("Detection");
    const auto setMarks = [&detection](std::vector<std::uint32_t> marks) {
        std::sort(marks.begin(), marks.end());
        marks.erase(std::unique(marks.begin(), marks.end()), marks.end());
        detection.marks = std::move(marks);
    };
    app.add_option_function<std::vector<std::uint32_t>>("--mark", setMarks,
                                                        "Scenes at these positions, whatever the method")
        ->type_name("N[,N...]")
        ->delimiter(',')
        ->allow_extra_args(false)
        ->take_all()
        ->check(CLI::Range(0u, kMarkLimit))
        ->group("Detection");
    app.add_option("--xml", program.common.xmlPath, "Write the scene list to this file when the run ends")
        ->type_name("FILE")
        ->group("Output");
    app.add_flag("--timecode", detection.readTimecode, "Read DV timecode and report where it starts")
        ->group("Output");
    if (program.addOptions)
        program.addOptions(app);
    app.add_option("INPUT", program.common.inputs,
                   program.takesMany ? "Video files, folders of such, or - for the standard input"
                                     : "The video file")
        ->required(!program.takesMany) // there it depends on other options
        ->configurable(false)
        ->type_name("FILE");
    app.set_version_flag("--version", VersionText(program), "Print the version and exit")
        ->configurable(false)
        ->group("General");
    app.set_help_flag("-h,--help", "Print this help and exit")->configurable(false)->group("General");
}

} // namespace scenedetect
