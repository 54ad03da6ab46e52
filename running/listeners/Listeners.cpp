#include "running/listeners/Listeners.h"

#include "products/outputs/OutputFormats.h"
#include "running/listeners/ClipMaker.h"
#include "running/listeners/PictureTaker.h"
#include "running/listeners/ReportWriter.h"
#include "running/listeners/RunWords.h"
#include "running/listeners/SceneTabler.h"
#include "running/listeners/StatsLogger.h"
#include "running/listeners/TapeLogger.h"

#include <utility>

namespace scenedetect {
std::vector<std::unique_ptr<RunListener>> MakeTableListeners(const RunSettings& run,
                                                             const OutputSettings& outputs,
                                                             const DetectionParameters& parameters,
                                                             bool canReadAgain) {
    std::vector<std::unique_ptr<RunListener>> listeners;
    std::vector<TableUse> uses;
    for (const OutputSettings::List& list : outputs.lists)
        uses.push_back(
            {list.path,
             [format = list.format](const SceneTable& table, FirstError&) { return format->write(table); },
             list.format->needsRecorded});
    if (!outputs.reportPath.empty()) {
        const auto figures = std::make_shared<ReportFigures>();
        listeners.push_back(std::make_unique<FiguresKeeper>(figures));
        uses.push_back(
            {outputs.reportPath, MakeReport({parameters, run.detection.transitions, run.length,
                                             CommandOf(run, parameters), SettingsOf(run, parameters),
                                             canReadAgain, outputs.reportLinksFilm ? outputs.reportPath : ""},
                                            figures)});
    }
    if (!uses.empty())
        listeners.push_back(std::make_unique<SceneTabler>(std::move(uses)));
    return listeners;
}

std::vector<std::unique_ptr<RunListener>> MakeListeners(const RunSettings& run, const OutputSettings& outputs,
                                                        OutputClaims& claims, Console& console,
                                                        RunProgress& progress) {
    const DetectionParameters parameters = run.detection.parameters.On({});
    auto listeners = MakeTableListeners(run, outputs, parameters, run.input != "-");
    if (!outputs.tapeLogPath.empty())
        listeners.push_back(std::make_unique<TapeLogger>(outputs.tapeLogPath));
    if (!outputs.statsPath.empty())
        listeners.push_back(std::make_unique<StatsLogger>(
            outputs.statsPath, !run.detection.transitions.IsEmpty(), run.range.part));
    if (!outputs.clips.folder.empty())
        listeners.push_back(std::make_unique<ClipMaker>(outputs.clips, claims, console, progress,
                                                        run.length.rule == ShortRule::Drop));
    if (!outputs.pictures.folder.empty())
        listeners.push_back(std::make_unique<PictureTaker>(outputs.pictures, claims, console, progress));
    return listeners;
}

} // namespace scenedetect
