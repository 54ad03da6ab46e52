#include "running/batch/SavedRun.h"

#include "products/stats/DecideAgain.h"
#include "products/stats/StatsPart.h"
#include "products/stats/StatsReader.h"
#include "reading/base/FirstError.h"
#include "reading/base/HostError.h"
#include "running/batch/FitRun.h"
#include "running/listeners/Listeners.h"
#include "running/listeners/ScenePrinter.h"
#include "running/listeners/StatsLogger.h"

namespace scenedetect {
namespace {

JoinedStats ReadAll(const std::vector<std::string>& paths) {
    std::vector<Stats> tables;
    tables.reserve(paths.size());
    for (const std::string& path : paths)
        tables.push_back(ReadStats(path));
    if (tables.size() == 1 && !tables.front().settings.isPart)
        return {std::move(tables.front()), {}, false};
    return JoinParts(std::move(tables));
}

} // namespace

RunEnd EndOf(const Stats& stats) {
    RunEnd end;
    end.samples = std::ssize(stats.rows);
    end.place = PlaceAfter(stats.rows.back().place, stats.settings.scale);
    return end;
}

DecidedScenes DecideScenes(Stats& stats, const DetectionParameters& parameters,
                           const TransitionChoice& transitions, const SceneLength& length) {
    const RuleSettings settings{parameters, transitions, length.LeastAt(stats.settings.scale), length.rule};
    const auto placeOf = [&stats](std::int64_t row) {
        return stats.rows[static_cast<std::size_t>(row)].place;
    };
    DecidedScenes decided;
    const std::vector<SceneRows> scenes = DecideAgain(stats, settings);
    for (std::size_t i = 0; i < scenes.size(); ++i) {
        const auto& [begin, end, kind, isOther] = scenes[i];
        decided.scenes.push_back(
            {std::ssize(decided.scenes) + 1, begin, begin, placeOf(begin), KindWord(kind)});
        if (end != (i + 1 < scenes.size() ? scenes[i + 1].begin : std::ssize(stats.rows)))
            decided.gaps.push_back({end, placeOf(end)});
    }
    return decided;
}

void DecideFromStats(const BatchSettings& settings, OutputClaims& claims, Console& console) {
    auto [stats, media, breaksOff] = ReadAll(settings.savedStatsPaths);
    ParameterChoice choice = settings.detection.parameters;
    choice.SettleArea(kAnySize, kAnySize);
    BatchSettings saved = settings;
    saved.inputs = {InputOf(stats)};
    DetectionParameters parameters = choice.On(stats.settings.parameters);
    TransitionChoice& transitions = saved.detection.transitions;
    if (!settings.fitPath.empty()) {
        const RuleSettings own{parameters, transitions, settings.length.LeastAt(stats.settings.scale),
                               settings.length.rule};
        const RuleFit fit = FitList(settings, stats, media, own);
        console.Answer(FitText(fit, own));
        console.Answer(FitCommand(fit, settings.length, saved.inputs.front()));
        parameters = fit.settings.parameters;
        transitions = fit.settings.transitions;
    }
    const DecidedScenes decided = DecideScenes(stats, parameters, transitions, settings.length);

    const std::vector<RunPlan> plans = MakePlans(saved, claims);
    const SceneCsv::Columns columns{false, saved.detection.Words().size() > 1};
    OrderedOutput output(console, SceneCsv::Header(columns), 1, plans.front().OnlyPrints());
    auto listeners = MakeTableListeners(plans.front().run, plans.front().outputs, parameters, false);
    if (plans.front().outputs.printsScenes)
        listeners.push_back(std::make_unique<ScenePrinter>(output, 0, columns));
    if (const std::string& path = plans.front().outputs.statsPath; !path.empty())
        listeners.push_back(std::make_unique<StatsLogger>(path, stats.settings.hasDistances));
    const RunInfo info{saved.inputs.front(), stats.settings.scale, {}, media, {}, false, {}, {}, parameters};
    RunEnd end = EndOf(stats);
    end.ending = breaksOff ? RunEnding::BrokeOff : RunEnding::Complete;

    FirstError error;
    const auto tell = [&](auto call) {
        for (auto& listener : listeners)
            error.Attempt([&] { call(*listener); });
        error.Rethrow();
    };
    tell([&](RunListener& each) { each.Begin(info); });
    for (const StatsRow& row : stats.rows)
        tell([&](RunListener& each) { each.Figures(row.place, row.figures, row.distances); });
    auto gap = decided.gaps.begin();
    const auto tellGaps = [&](std::int64_t before) {
        for (; gap != decided.gaps.end() && gap->sample < before; ++gap)
            tell([&](RunListener& each) { each.Gap(gap->sample, gap->place); });
    };
    for (const FoundScene& scene : decided.scenes) {
        tellGaps(scene.sample);
        tell([&](RunListener& each) { each.Scene(scene); });
    }
    tellGaps(end.samples);
    tell([&](RunListener& each) { each.End(end); });
}

} // namespace scenedetect
