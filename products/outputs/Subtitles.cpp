#include "products/outputs/SceneTable.h"
#include "products/outputs/SceneWriters.h"
#include "reading/base/HostError.h"
#include "reading/timing/ClockText.h"

namespace scenedetect {
namespace {

std::string CueTime(const SceneTable& table, const FilePlace& place) {
    std::string text = ClockText(MediaTime(table, place), table.scale, 3);
    text[text.size() - 4] = ',';
    return text;
}

} // namespace

std::string RecordingSubtitles(const SceneTable& table) {
    if (!table.recorded)
        throw HostError(table.input + ": subtitles of recording times (srt) are made of DV frames only");
    std::string text;
    std::int64_t number = 0;
    for (const RecordedSpan& span : *table.recorded)
        text += std::to_string(++number) + "\r\n" + CueTime(table, span.start) + " --> " +
                CueTime(table, span.end) + "\r\n" + span.text + "\r\n\r\n";
    return text;
}

} // namespace scenedetect
