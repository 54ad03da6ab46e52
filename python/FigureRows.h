// The figures of a run as a NumPy array.
#pragma once

#include "products/stats/StatsFile.h"
#include "running/detection/DetectionSettings.h"
#include "running/run/SceneLength.h"

#include <pybind11/numpy.h>

#include <cstdint>
#include <vector>

namespace scenedetect {

/// A row of the table of figures (products/stats/StatsFile.h); -1 stands for an empty field. Without padding.
struct FigureRow {
    std::int64_t frame;
    std::int16_t difference;
    std::int16_t level;
    std::int16_t filled;
    bool dark;
    bool cut;
    std::int64_t sample;
    std::int64_t time;
    std::int64_t byte;
};

[[nodiscard]] pybind11::array_t<FigureRow> ArrayOf(const std::vector<StatsRow>& rows);

/// From parameter names (with underscores) and values. ValueError for a name that is none, and for a value
/// out of its range. "area" stands for four of them.
[[nodiscard]] ParameterChoice ParametersOf(const pybind11::dict& parameters);
/// Of pictures whose size is not known: ValueError for an area in pixels.
[[nodiscard]] ParameterChoice SettledParametersOf(const pybind11::dict& parameters);

[[nodiscard]] std::optional<TimePoint> PointOf(const std::optional<std::string>& text);
/// ValueError for another word than those of a ShortRule.
[[nodiscard]] SceneLength LengthOf(const std::optional<std::string>& least, const std::string& rule);

[[nodiscard]] pybind11::dict DictOf(const DetectionParameters& parameters);

} // namespace scenedetect
