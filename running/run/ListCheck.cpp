#include "running/run/ListCheck.h"

#include "products/listed/ListedScenes.h"
#include "reading/base/FileFacts.h"

namespace scenedetect {

void RequireListFits(const RunSettings& settings, const SceneList& list, const Reading& reading) {
    if (!FactsOf(settings.input).isFile)
        return;
    Console silent([](MessageKind, const std::string&) {});
    const auto reader = OpenPictures(settings.input, {reading.stop, silent, reading.threads}, {});
    ListedScenes listed(list, reader->Scale(), reader->Info().startTimecode);
    RunRange range(settings.range, reader->Scale());
    FilePlace end;
    for (Picture picture; reader->Next(picture) && !range.IsOver(picture.place);) {
        if (!range.HasBegun(picture.place) || range.IsOver(picture.place))
            continue;
        (void)listed.At(picture.place);
        end = PlaceAfter(picture.place, reader->Scale());
    }
    if (!reading.stop && !range.HasEnded())
        listed.Finish(end);
}

} // namespace scenedetect
