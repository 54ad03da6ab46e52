#include "running/listeners/SceneNames.h"

#include "products/outputs/SceneTable.h"
#include "reading/dv/PackText.h"

namespace scenedetect {

NameFields NamesOf(const FoundScene& scene, const RunInfo& info) {
    const TapeTexts tape = TextsOf(scene.tape);
    const std::string timecode = SceneTimecode(tape, scene.place, info.scale, info.media.startTimecode);
    return {.name = NameOfInput(info.input),
            .scene = scene.number,
            .method = scene.method,
            .frame = scene.place.frame,
            .timecode = timecode.empty() ? TimecodeText(scene.place.time, info.scale) : timecode,
            .date = tape.date,
            .time = tape.time,
            .aspect = tape.aspect,
            .audio = tape.audio,
            .title = scene.name};
}

} // namespace scenedetect
