#include "running/listeners/ReportWriter.h"

#include "products/report/ReportPage.h"
#include "products/stills/FrameFetcher.h"
#include "products/stills/StillPicture.h"

namespace scenedetect {
namespace {

constexpr int kPictureWidth = 224;
constexpr int kPictureLoss = 6; // there may be a thousand in a page

using Jpeg = std::vector<std::uint8_t>;

// Where there are more scenes than pictures, every second, third ... gets one.
std::vector<Jpeg> FetchPictures(const SceneTable& table) {
    std::vector<Jpeg> pictures(table.scenes.size());
    if (table.scenes.empty())
        return pictures;
    const auto fetcher = FrameFetcher::Open(table.input, table.scenes.front().start.stamp == kNoStamp);
    const std::size_t step = (table.scenes.size() + kMostReportPictures - 1) / kMostReportPictures;
    for (std::size_t i = 0; i < table.scenes.size(); i += step)
        if (const AVFrame* frame = fetcher->Fetch(table.scenes[i].start))
            pictures[i] = EncodeStill(*frame, {kPictureWidth, fetcher->QuarterTurns(), kPictureLoss},
                                      StillFormat::Jpeg);
    return pictures;
}

ReportRule RuleOf(const ReportSettings& settings, const TimeScale& scale) {
    ReportRule rule{settings.parameters,
                    settings.transitions,
                    "",
                    {},
                    0,
                    kShortRules[static_cast<std::size_t>(settings.length.rule)]};
    if (const auto& least = settings.length.least) {
        const TimePosition length = Resolve(*least, scale);
        rule.leastText = least->text;
        rule.leastFrames = length.frame;
        rule.leastTime = length.time;
    }
    return rule;
}

} // namespace

TableUse::Make MakeReport(ReportSettings settings, std::shared_ptr<const ReportFigures> figures) {
    return [settings = std::move(settings), figures = std::move(figures)](const SceneTable& table,
                                                                          FirstError& lack) {
        ReportContent content{table, *figures,         RuleOf(settings, table.scale), settings.command,
                              {},    settings.settings};
        // An input that is gone by now costs the pictures only.
        if (settings.hasPictures)
            lack.Attempt([&] { content.pictures = FetchPictures(table); });
        return MakeReportPage(content);
    };
}

} // namespace scenedetect
