#include "products/stats/DecideAgain.h"

#include "engine/JudgementTrace.h"
#include "reading/base/HostError.h"
#include "scenes/FrameFigures.h"
#include "scenes/ParameterNames.h"

#include <string>

namespace scenedetect {
namespace {

constexpr Ratio kNtscRate{30000, 1001};

} // namespace

FigureTable TableOf(const Stats& stats) {
    FigureTable table;
    for (const auto& [place, figures, distances] : stats.rows) {
        table.difference.push_back(static_cast<std::uint8_t>(figures.nDifference));
        table.level.push_back(static_cast<std::uint8_t>(figures.nLevel));
        table.places.push_back({place.frame, place.time});
        if (!stats.settings.hasDistances)
            continue;
        for (std::size_t i = 0; i < table.back.size(); ++i)
            table.back[i].push_back(static_cast<std::uint8_t>(distances.nDistance[i]));
        table.variance.push_back(static_cast<std::uint16_t>(distances.nVariance));
        table.detail.push_back(static_cast<std::uint16_t>(distances.nDetail));
    }
    const FilePlace end = PlaceAfter(stats.rows.back().place, stats.settings.scale);
    table.end = {end.frame, end.time};
    return table;
}

void RequireDecidable(const Stats& stats, const RuleSettings& settings) {
    const DetectionParameters& parameters = settings.parameters;
    if (parameters.diffClamp != stats.settings.parameters.diffClamp)
        throw HostError(stats.path + ": measured with --clamp " +
                        std::to_string(stats.settings.parameters.diffClamp) + ", not " +
                        std::to_string(parameters.diffClamp) +
                        ": another clamp changes the differences themselves, so it needs a run on the video");
    if (const std::string area = AreaText(stats.settings.parameters); AreaText(parameters) != area)
        throw HostError(stats.path + ": measured with --area " + area + ", not " + AreaText(parameters) +
                        ": another area has other differences, so it needs a run on the video");
    if (stats.settings.isPart)
        throw HostError(stats.path +
                        ": is a part of a film, so that nothing can be decided before all are joined");
    if (stats.rows.empty())
        throw HostError(stats.path + ": no frame was measured, so that nothing can be decided");
    if (!settings.transitions.IsEmpty() && !stats.settings.hasDistances)
        throw HostError(
            stats.path +
            ": has no distances, which --flashes, --fades and --dissolves need: it takes a run on "
            "the video with one of these and --stats");
}

std::vector<SceneRows> DecideAgain(Stats& stats, const RuleSettings& settings) {
    RequireDecidable(stats, settings);
    stats.settings.parameters = settings.parameters;
    // For the log's time codes, as the filter does it.
    const std::int32_t framesPerSecond = IsSameRate(stats.settings.scale.rate, kNtscRate) ? 30 : 25;
    const auto note = [&](std::int64_t row, const Judgement& judgement, const Decision& decision) {
        const auto figures = [&](std::int64_t back) {
            return row >= back ? &stats.rows[static_cast<std::size_t>(row - back)].figures : nullptr;
        };
        NoteJudgement(judgement, *figures(0), figures(1), figures(2));
        TraceJudgement(decision, judgement, framesPerSecond);
    };
    return DecideRows(TableOf(stats), settings, {}, note, [](const auto&) { return true; });
}

} // namespace scenedetect
