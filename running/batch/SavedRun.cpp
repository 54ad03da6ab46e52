#include "running/batch/SavedRun.h"

#include "products/stats/DecideAgain.h"
#include "products/stats/StatsReader.h"
#include "reading/base/FirstError.h"
#include "running/listeners/Listeners.h"
#include "running/listeners/ScenePrinter.h"
#include "running/run/ShortScenes.h"

namespace scenedetect {
namespace {

std::string InputOf(const Stats& stats) {
    for (const StatsNote& note : stats.settings.notes)
        if (note.name == "input")
            return note.value;
    return stats.path;
}

} // namespace

void DecideFromStats(const BatchSettings& settings, OutputClaims& claims, Console& console) {
    Stats stats = ReadStats(settings.savedStatsPath);
    const DetectionParameters parameters = settings.detection.parameters.On(stats.settings.parameters);
    const std::vector<std::int64_t> positions = DecideAgain(stats, parameters);

    BatchSettings saved = settings;
    saved.inputs = {InputOf(stats)};
    const std::vector<RunPlan> plans = MakePlans(saved, claims);
    OrderedOutput output(console, SceneCsv::Header({}), 1, plans.front().OnlyPrints());
    auto listeners = MakeTableListeners(plans.front().run, plans.front().outputs, parameters, false);
    if (plans.front().outputs.printsScenes)
        listeners.push_back(std::make_unique<ScenePrinter>(output, 0, SceneCsv::Columns{}));

    FirstError error;
    const auto tell = [&](auto call) {
        for (auto& listener : listeners)
            error.Attempt([&] { call(*listener); });
        error.Rethrow();
    };
    const TimeScale scale = stats.settings.scale;
    tell([&](RunListener& each) { each.Begin({saved.inputs.front(), scale, {}, {}, {}}); });
    for (const StatsRow& row : stats.rows)
        tell([&](RunListener& each) { each.Figures(row.place, row.figures); });
    ShortScenes scenes(settings.shortestScene,
                       [&](const FoundScene& scene) { tell([&](RunListener& each) { each.Scene(scene); }); });
    for (const std::int64_t position : positions)
        scenes.Add({0, position, position, stats.rows[static_cast<std::size_t>(position)].place,
                    MethodWord(KxMethodVideo)});
    RunEnd end;
    end.samples = std::ssize(stats.rows);
    end.place = PlaceAfter(stats.rows.back().place, scale);
    scenes.Settle(end.place.frame);
    tell([&](RunListener& each) { each.End(end); });
}

} // namespace scenedetect
