// The report of a run: one HTML page that needs nothing else.
#pragma once

#include "products/outputs/SceneTable.h"
#include "products/report/Timeline.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <utility>
#include <vector>

namespace scenedetect {

/// So that a page of hours still scrolls: scenes that get a picture, and those that get an entry at all.
inline constexpr std::size_t kMostReportPictures = 1000;
inline constexpr std::size_t kMostReportScenes = 10'000;

struct ReportContent {
    const SceneTable& table;
    const Timeline& timeline; ///< without points there is no plot, only the scenes
    std::int32_t cutThreshold = 0;
    std::int32_t darkLevel = 0;
    std::vector<std::vector<std::uint8_t>> pictures; ///< JPEG, one a scene or none; empty: no picture
    std::vector<std::pair<std::string, std::string>> settings; ///< of the run: name and value
};

/// The page as UTF-8 text. Names that are not UTF-8 get replacement characters.
[[nodiscard]] std::string MakeReportPage(const ReportContent& content);

} // namespace scenedetect
