// From this project's records to Python's objects and back.
#pragma once

#include "products/outputs/SceneTable.h"
#include "reading/timing/TimeScale.h"
#include "running/run/RunListener.h"

#include <pybind11/pybind11.h>

#include <array>
#include <cstdint>
#include <optional>

namespace scenedetect {

/// A datetime.datetime of year, month, day, hours, minutes and seconds.
[[nodiscard]] pybind11::object DatetimeOf(const std::array<int, 6>& parts);
/// A fractions.Fraction.
[[nodiscard]] pybind11::object FractionOf(std::int64_t num, std::int64_t den);
/// A positive fraction. ValueError for one whose parts are beyond 32 bits.
[[nodiscard]] Ratio RatioOf(const pybind11::handle& fraction);

/// The keyword arguments of kxscenes.Video; `end` lies after the last frame, where that is known.
[[nodiscard]] pybind11::dict VideoOf(const SceneTable& table, const std::optional<FilePlace>& end);
/// The same back, from a kxscenes.Video.
[[nodiscard]] SceneTable TableOfVideo(const pybind11::handle& video);

/// The arguments of a kxscenes.Scene.
[[nodiscard]] pybind11::tuple SceneOf(const FoundScene& scene, const TimeScale& scale);

/// Adds to the module what has to do with one subject.
void BindRuns(pybind11::module_& module);
void BindFigures(pybind11::module_& module);
void BindFrames(pybind11::module_& module);
void BindLists(pybind11::module_& module);

} // namespace scenedetect
