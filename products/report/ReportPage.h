// The report of a run: one HTML page that needs nothing else.
#pragma once

#include "products/outputs/SceneTable.h"
#include "products/report/ReportFigures.h"
#include "scenes/rule/DecideRows.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <utility>
#include <vector>

namespace scenedetect {

/// So that a page of hours stays small: scenes that get a picture.
inline constexpr std::size_t kMostReportPictures = 1000;

struct ReportContent {
    const SceneTable& table;
    const ReportFigures& figures;                    ///< without rows only the scenes are shown
    RuleSettings rule;                               ///< that the run found its scenes by
    std::string leastText;                           ///< of the shortest scene, as it was given; empty: none
    std::vector<std::string> command;                ///< the run's options that the page does not change
    std::vector<std::vector<std::uint8_t>> pictures; ///< JPEG, one a scene or none; empty: no picture
    std::vector<std::pair<std::string, std::string>> settings; ///< of the run: name and value
    std::string film{}; ///< where the page finds the video, relative to it; empty: it does not
};

/// The page as UTF-8 text. Names that are not UTF-8 get replacement characters.
[[nodiscard]] std::string MakeReportPage(const ReportContent& content);

} // namespace scenedetect
