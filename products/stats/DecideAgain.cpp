#include "products/stats/DecideAgain.h"

#include "engine/Decision.h"
#include "reading/base/HostError.h"
#include "scenes/FrameFigures.h"
#include "scenes/ParameterNames.h"
#include "scenes/ScenePosition.h"

#include <string>

namespace scenedetect {
namespace {

constexpr Ratio kNtscRate{30000, 1001};

} // namespace

std::vector<std::int64_t> DecideAgain(Stats& stats, const DetectionParameters& parameters) {
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
    stats.settings.parameters = parameters;
    Decision decision;
    decision.SetParameters(parameters);
    // For the log's time codes, as the filter does it.
    decision.SetFrameRate(IsSameRate(stats.settings.scale.rate, kNtscRate) ? 30 : 25);

    std::vector<std::int64_t> positions;
    for (std::size_t i = 0; i < stats.rows.size(); ++i) {
        KxFrameFigures& figures = stats.rows[i].figures;
        const Judgement judgement = decision.Judge(figures.nDifference, figures.nLevel);
        NoteJudgement(judgement, figures, i >= 1 ? &stats.rows[i - 1].figures : nullptr,
                      i >= 2 ? &stats.rows[i - 2].figures : nullptr);
        const auto frame = static_cast<std::int32_t>(i);
        if (AddsVideoScene(frame, judgement))
            positions.push_back(ScenePosition(KxMethodVideo, {.frameNumber = frame}));
    }
    return positions;
}

} // namespace scenedetect
