#include "running/listeners/SceneNames.h"

#include "products/outputs/SceneTable.h"

#include <cstdio>

namespace scenedetect {
namespace {

std::string TapeText(const char* format, int a, int b, int c) {
    char text[40];
    std::snprintf(text, sizeof text, format, a, b, c);
    return text;
}

} // namespace

NameFields NamesOf(const FoundScene& scene, const RunInfo& info) {
    NameFields names{NameOfInput(info.input),
                     scene.number,
                     scene.method,
                     scene.place.frame,
                     info.media.startTimecode
                         ? SourceTimecodeText(scene.place, info.scale, *info.media.startTimecode)
                         : TimecodeText(scene.place.time, info.scale),
                     "",
                     ""};
    const DvPacks& packs = scene.tape;
    if (const auto& code = packs.timecode)
        names.timecode = TapeText("%02d:%02d:%02d", code->hours, code->minutes, code->seconds) +
                         TapeText(code->isDropFrame ? ";%02d" : ":%02d", code->frames, 0, 0);
    if (packs.date)
        names.date = TapeText("%04d-%02d-%02d", int(packs.date->year()),
                              static_cast<int>(unsigned(packs.date->month())),
                              static_cast<int>(unsigned(packs.date->day())));
    if (packs.time) {
        const std::chrono::hh_mm_ss clock(*packs.time);
        names.time =
            TapeText("%02d:%02d:%02d", static_cast<int>(clock.hours().count()),
                     static_cast<int>(clock.minutes().count()), static_cast<int>(clock.seconds().count()));
    }
    return names;
}

} // namespace scenedetect
