#include "running/listeners/ReportWriter.h"

#include "products/report/ReportPage.h"
#include "products/stills/FrameFetcher.h"
#include "products/stills/StillPicture.h"

#include <algorithm>

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
    const std::size_t shown = std::min(table.scenes.size(), kMostReportScenes);
    const std::size_t step = (shown + kMostReportPictures - 1) / kMostReportPictures;
    for (std::size_t i = 0; i < shown; i += step)
        if (const AVFrame* frame = fetcher->Fetch(table.scenes[i].start))
            pictures[i] = EncodeStill(*frame, {kPictureWidth, fetcher->QuarterTurns(), kPictureLoss},
                                      StillFormat::Jpeg);
    return pictures;
}

} // namespace

TableUse::Make MakeReport(ReportSettings settings, std::shared_ptr<const Timeline> timeline) {
    return [settings = std::move(settings), timeline = std::move(timeline)](const SceneTable& table,
                                                                            FirstError& lack) {
        ReportContent content{
            table, *timeline,        settings.parameters.cutThreshold, settings.parameters.darkLevel,
            {},    settings.settings};
        // An input that is gone by now costs the pictures only.
        if (settings.hasPictures)
            lack.Attempt([&] { content.pictures = FetchPictures(table); });
        return MakeReportPage(content);
    };
}

} // namespace scenedetect
