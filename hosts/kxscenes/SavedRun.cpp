#include "hosts/kxscenes/SavedRun.h"

#include "hosts/kxscenes/Listeners.h"
#include "hosts/kxscenes/ScenePrinter.h"
#include "hosts/shared/FirstError.h"
#include "hosts/stats/DecideAgain.h"
#include "hosts/stats/StatsReader.h"

namespace scenedetect {
namespace {

std::string InputOf(const Stats& stats) {
    for (const StatsNote& note : stats.settings.notes)
        if (note.name == "input")
            return note.value;
    return stats.path;
}

} // namespace

void DecideFromStats(const Options& options, const KxOptions& own, Console& console) {
    Stats stats = ReadStats(own.requests.savedStatsPath);
    const DetectionParameters parameters = own.requests.parameters.On(stats.settings.parameters);
    const std::vector<std::int64_t> positions = DecideAgain(stats, parameters);

    Options saved = options;
    saved.inputs = {InputOf(stats)};
    OutputClaims claims;
    claims.AddInput(stats.path);
    const std::vector<RunPlan> plans = MakePlans(saved, own, claims);
    OrderedOutput output(console, SceneCsv::Header({}), 1);
    auto listeners = MakeTableListeners(plans.front(), parameters);
    if (!plans.front().WritesToStandardOutput())
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
        end.place = PlaceBehind(stats.rows.back().place, scale);
    tell([&](RunListener& each) { each.End(end); });
}

} // namespace scenedetect
