#include "running/batch/SavedRun.h"

#include "products/stats/DecideAgain.h"
#include "products/stats/StatsReader.h"
#include "reading/base/FirstError.h"
#include "running/listeners/Listeners.h"
#include "running/listeners/ScenePrinter.h"

namespace scenedetect {
namespace {

std::string InputOf(const Stats& stats) {
    for (const StatsNote& note : stats.settings.notes)
        if (note.name == "input")
            return note.value;
    return stats.path;
}

} // namespace

void DecideFromStats(const BatchSettings& settings, Console& console) {
    Stats stats = ReadStats(settings.savedStatsPath);
    const DetectionParameters parameters = settings.detection.parameters.On(stats.settings.parameters);
    const std::vector<std::int64_t> positions = DecideAgain(stats, parameters);

    BatchSettings saved = settings;
    saved.inputs = {InputOf(stats)};
    OutputClaims claims;
    claims.AddInput(stats.path);
    const std::vector<RunPlan> plans = MakePlans(saved, claims);
    OrderedOutput output(console, SceneCsv::Header({}), 1);
    auto listeners = MakeTableListeners(plans.front().run, plans.front().outputs, parameters, false);
    if (!plans.front().outputs.WritesToStandardOutput())
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
    std::int64_t number = 0;
    for (const std::int64_t position : positions) {
        const FoundScene scene{++number,
                               position,
                               position,
                               stats.rows[static_cast<std::size_t>(position)].place,
                               MethodWord(KxMethodVideo),
                               nullptr};
        tell([&](RunListener& each) { each.Scene(scene); });
    }
    RunEnd end;
    end.samples = std::ssize(stats.rows);
    if (!stats.rows.empty())
        end.place = PlaceAfter(stats.rows.back().place, scale);
    tell([&](RunListener& each) { each.End(end); });
}

} // namespace scenedetect
