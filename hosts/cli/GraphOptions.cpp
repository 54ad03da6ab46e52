#include "hosts/cli/GraphOptions.h"

#include "hosts/cli/ParameterOptions.h"

#include <CLI/CLI.hpp>

#include <map>

namespace scenedetect {
namespace {

constexpr const char* kDescription = "Finds the scenes of a video file in a DirectShow graph: prints one CSV "
                                     "line a scene, and on request writes "
                                     "a scene list.";

constexpr const char* kNotes = R"(
Input: AVI files with DV or uncompressed video, and raw DV streams; nothing is decoded.
Sources:
  auto    the system's where it can deliver the pictures as they are, else the host's own (the default)
  system  the system's file source and AVI splitter
  own     the host's source filter, for all input

Output: a header line, then a line a scene: scene,frame,timecode,seconds. "scene" counts from 1, "frame" is
the frame of the file, from 0; with the host's own source frames that were dropped while recording count too.
Positions of --mark and of the scene list count the pictures that are there.
)";

constexpr const char* kExitNotes =
    "Exit codes: 0 done, 1 the input cannot be read or the scene list not be written, 2 wrong command line.";

} // namespace

std::optional<EarlyEnd> ParseCommandLine(int argc, const char* const* argv, GraphOptions& options) {
    const std::map<std::string, SourceKind> sources = {
        {"auto", SourceKind::Automatic}, {"system", SourceKind::System}, {"own", SourceKind::Own}};
    HostProgram program{"kxscenes-graph",
                        kDescription,
                        kNotes,
                        kExitNotes,
                        {options.detection, options.xmlPath, options.inputs}};
    program.addOptions = [&](CLI::App& app) {
        app.add_option("--module", options.modulePath,
                       "Load the filter from this file instead of the registered one")
            ->type_name("FILE");
        app.add_option_function<std::string>(
               "--source", [&](const std::string& word) { options.source = sources.at(word); },
               "Who reads the file")
            ->type_name("auto|system|own")
            ->check([&sources](const std::string& word) {
                return sources.count(word) ? "" : "no such source: " + word;
            });
        AddParameterOptions(app, options.detection.parameters);
    };
    program.check = [&options]() -> std::string {
        // The host looks at the first frame itself, on its way.
        if (options.detection.readTimecode && options.source == SourceKind::System)
            return "--timecode needs --source own or auto";
        if (!options.detection.parameters.IsEmpty() && !options.detection.Uses(KxMethodVideo))
            return "the parameters go with --method video only";
        return "";
    };
    return ParseCommandLine(program, argc, argv);
}

} // namespace scenedetect
