#include "products/outputs/SceneTable.h"
#include "products/outputs/SceneWriters.h"
#include "reading/base/CsvField.h"
#include "reading/timing/ClockText.h"

#include <algorithm>

namespace scenedetect {
namespace {

constexpr const char* kHeader = "Scene Number,Start Frame,Start Timecode,Start Time (seconds),"
                                "End Frame,End Timecode,End Time (seconds),"
                                "Length (frames),Length (timecode),Length (seconds),"
                                "Method,Source Timecode";

// Three columns: a count of frames, and a time in both forms.
std::string Columns(std::int64_t frames, std::int64_t time, const TimeScale& scale) {
    return ',' + std::to_string(frames) + ',' + ClockText(time, scale, 3) + ',' + SecondsText(time, scale);
}

} // namespace

std::string SceneSheet(const SceneTable& table) {
    std::string text = kHeader;
    for (const TapeColumn& column : kTapeColumns)
        text += std::string(",") + column.name;
    const bool hasNames =
        std::ranges::any_of(table.scenes, [](const SceneSpan& scene) { return !scene.name.empty(); });
    text += hasNames ? ",Name\r\n" : "\r\n";
    std::int64_t number = 0;
    for (const SceneSpan& scene : table.scenes) {
        // The last frame of a scene counted from 1 is the one after it counted from 0.
        text +=
            std::to_string(++number) + Columns(scene.start.frame + 1, scene.start.time, table.scale) +
            Columns(scene.end.frame, scene.end.time, table.scale) +
            Columns(scene.FrameCount(), scene.end.time - scene.start.time, table.scale) + ',' +
            CsvField(scene.method) + ',' +
            (table.startTimecode ? SourceTimecodeText(scene.start, table.scale, *table.startTimecode) : "");
        for (const TapeColumn& column : kTapeColumns)
            text += ',' + scene.tape.*column.text;
        text += (hasNames ? ',' + CsvField(scene.name) : "") + "\r\n";
    }
    return text;
}

} // namespace scenedetect
