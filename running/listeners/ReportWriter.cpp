#include "running/listeners/ReportWriter.h"

#include "products/outputs/NameText.h"
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
    if (!fetcher)
        return pictures;
    const std::size_t step = (table.scenes.size() + kMostReportPictures - 1) / kMostReportPictures;
    for (std::size_t i = 0; i < table.scenes.size(); i += step)
        if (const AVFrame* frame = fetcher->Fetch(table.scenes[i].start))
            pictures[i] = EncodeStill(*frame, {kPictureWidth, fetcher->QuarterTurns(), kPictureLoss},
                                      StillFormat::Jpeg);
    return pictures;
}

} // namespace

TableUse::Make MakeReport(ReportSettings settings, std::shared_ptr<const ReportFigures> figures) {
    return [settings = std::move(settings), figures = std::move(figures)](const SceneTable& table,
                                                                          FirstError& lack) {
        const SceneLength& length = settings.length;
        ReportContent content{
            table,
            *figures,
            {settings.parameters, settings.transitions, length.LeastAt(table.scale), length.rule},
            length.least ? length.least->text : "",
            settings.command,
            {},
            settings.settings};
        if (!settings.linkedFrom.empty())
            content.film = RelativeUrl(table.input, settings.linkedFrom);
        // An input that is gone by now costs the pictures only.
        if (settings.hasPictures)
            lack.Attempt([&] { content.pictures = FetchPictures(table); });
        return MakeReportPage(content);
    };
}

} // namespace scenedetect
