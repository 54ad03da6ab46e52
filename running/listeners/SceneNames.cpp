#include "running/listeners/SceneNames.h"

#include "products/outputs/SceneTable.h"
#include "reading/dv/PackText.h"

namespace scenedetect {

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
    if (packs.timecode)
        names.timecode = TextOf(*packs.timecode);
    if (packs.date)
        names.date = TextOf(*packs.date);
    if (packs.time)
        names.time = TextOf(*packs.time);
    return names;
}

} // namespace scenedetect
