// Scene lists for other programs, of any scenes.
#include "products/files/OutputFile.h"
#include "products/outputs/OutputFormats.h"
#include "python/Conversion.h"
#include "reading/base/HostError.h"

#include <pybind11/stl.h>

#include <string>
#include <vector>

namespace py = pybind11;

namespace scenedetect {
namespace {

const OutputFormat& FormatOf(const std::string& name) {
    const OutputFormat* format = FormatByName(name);
    if (!format)
        throw py::value_error(UnknownFormatText(name));
    return *format;
}

// Frame, time in the video's time base, method; timecode, date, time, aspect and audio of the tape.
using SceneRow = std::tuple<std::int64_t, std::int64_t, std::string, std::string, std::string, std::string,
                            std::string, std::string>;

// The last scene lasts to `end`.
std::string ListText(const std::string& format, const py::object& video, const std::vector<SceneRow>& scenes,
                     std::int64_t end) {
    const OutputFormat& chosen = FormatOf(format);
    SceneTable table = TableOfVideo(video);
    for (const auto& [frame, time, method, timecode, date, ofDay, aspect, audio] : scenes)
        table.scenes.push_back({{frame, time}, {}, method, frame, {date, ofDay, timecode, aspect, audio}});
    FilePlace next{table.frameCount, end};
    for (auto scene = table.scenes.rbegin(); scene != table.scenes.rend(); ++scene) {
        scene->end = next;
        next = scene->start;
        if (scene->start.frame < 0 || scene->start.time < 0 || scene->FrameCount() < 1 ||
            scene->end.time < scene->start.time)
            throw py::value_error("the scene at frame " + std::to_string(scene->start.frame) +
                                  " does not lie between its neighbours and within the video");
    }
    return chosen.write(table);
}

} // namespace

void BindLists(py::module_& module) {
    module.def("formats", [] {
        std::vector<std::string> names;
        for (const OutputFormat& format : OutputFormats())
            if (!format.needsRecorded)
                names.emplace_back(format.name);
        return names;
    });
    module.def("format_of", [](const std::string& path) {
        const OutputFormat* format = FormatBySuffix(path);
        if (!format)
            throw py::value_error(UnknownSuffixText(path));
        return std::string(format->name);
    });
    module.def("list_text",
               [](const std::string& format, const py::object& video, const std::vector<SceneRow>& scenes,
                  std::int64_t end) { return py::bytes(ListText(format, video, scenes, end)); });
    module.def("write_file", [](const std::string& path, const std::string& text) {
        WriteFile(path, Existing::Replace, text);
    });
}

} // namespace scenedetect
