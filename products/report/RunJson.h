// What the report's script knows of a run, but for its figures.
#pragma once

#include "products/report/ReportPage.h"

#include <string>
#include <vector>

namespace scenedetect {

/// The figures' columns; none without rows.
[[nodiscard]] std::vector<ReportFigures::Column> ColumnsOf(const ReportContent& content);

/// One object, safe inside a script element. Text that is not UTF-8 gets replacement characters.
[[nodiscard]] std::string RunJson(const ReportContent& content);

} // namespace scenedetect
