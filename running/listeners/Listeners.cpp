#include "running/listeners/Listeners.h"

#include "products/outputs/OutputFormats.h"
#include "running/listeners/ClipMaker.h"
#include "running/listeners/PictureTaker.h"
#include "running/listeners/ReportWriter.h"
#include "running/listeners/SceneTabler.h"
#include "running/listeners/StatsLogger.h"
#include "running/listeners/TapeLogger.h"
#include "scenes/ParameterNames.h"

#include <optional>
#include <utility>

namespace scenedetect {
namespace {

// The settings of a run, for people.
std::vector<std::pair<std::string, std::string>> SettingsOf(const RunSettings& run,
                                                            const DetectionParameters& parameters) {
    std::vector<std::pair<std::string, std::string>> settings = {{"input", run.input},
                                                                 {"methods", run.detection.WordList(", ")}};
    if (!run.listPath.empty())
        settings.back() = {"scenes of", run.listPath};
    const auto addNumber = [&settings](const char* name, std::int64_t value) {
        if (value != 0)
            settings.emplace_back(name, std::to_string(value));
    };
    const auto addPoint = [&settings](const char* name, const std::optional<TimePoint>& point) {
        if (point)
            settings.emplace_back(name, point->text);
    };
    addNumber("interval", run.detection.interval);
    addPoint("start", run.range.start);
    addPoint("end", run.range.end);
    addPoint("duration", run.range.duration);
    addPoint("min-scene", run.length.least);
    if (run.length.least && run.length.rule != ShortRule::Merge)
        settings.emplace_back("short-scenes", kShortRules[static_cast<std::size_t>(run.length.rule)]);
    const TransitionChoice& transitions = run.detection.transitions;
    if (transitions.dropsFlashes)
        settings.emplace_back("flashes", "drop");
    if (transitions.FindsFades())
        settings.emplace_back("fades", FadePlaceWord(transitions.fades));
    if (transitions.findsDissolves)
        settings.emplace_back("dissolves", "found");
    if (run.detection.Uses(KxMethodVideo)) {
        for (std::size_t i = 0; i < KxAreaLeft; ++i)
            settings.emplace_back(kParameterNames[i], std::to_string(kDetectionParameters[i].Of(parameters)));
        if (const auto& area = run.detection.parameters.area; area || !parameters.HasWholeArea())
            settings.emplace_back("area", area ? area->text : AreaText(parameters));
    }
    settings.emplace_back("made by", std::string("kxscenes ") + HOSTS_VERSION);
    return settings;
}

} // namespace

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
        const auto timeline = std::make_shared<Timeline>();
        listeners.push_back(std::make_unique<TimelineKeeper>(timeline));
        uses.push_back({outputs.reportPath,
                        MakeReport({parameters, SettingsOf(run, parameters), canReadAgain}, timeline)});
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
