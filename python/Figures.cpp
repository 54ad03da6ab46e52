// The figures of the picture comparison, and scenes decided from them.
#include "python/FigureRows.h"

#include "products/files/OutputFile.h"
#include "products/stats/StatsReader.h"
#include "products/stats/StatsWriter.h"
#include "python/Conversion.h"
#include "reading/base/HostError.h"
#include "running/batch/SavedRun.h"
#include "running/listeners/SceneTabler.h"
#include "scenes/ParameterNames.h"

#include <pybind11/stl.h>

#include <algorithm>
#include <string>

namespace py = pybind11;

namespace scenedetect {
namespace {

constexpr std::int16_t kNotFilled = -1;

std::string KeywordOf(std::size_t parameter) {
    std::string name = kParameterNames[parameter];
    std::ranges::replace(name, '-', '_');
    return name;
}

FigureRow RowOf(const StatsRow& row) {
    const KxFrameFigures& figures = row.figures;
    return {.frame = row.place.frame,
            .difference = static_cast<std::int16_t>(figures.nDifference),
            .level = static_cast<std::int16_t>(figures.nLevel),
            .filled =
                (figures.dwFlags & KxFrameFilled) ? static_cast<std::int16_t>(figures.nFilled) : kNotFilled,
            .dark = (figures.dwFlags & KxFrameDark) != 0,
            .cut = (figures.dwFlags & KxFrameCut) != 0,
            .sample = figures.dwPosition,
            .time = row.place.time,
            .byte = row.place.byteOffset};
}

StatsRow StatsRowOf(const FigureRow& row) {
    StatsRow stats;
    stats.place = {row.frame, row.time, row.byte};
    stats.figures = {.dwPosition = static_cast<ULONG>(row.sample),
                     .nDifference = row.difference,
                     .nLevel = row.level,
                     .nFilled = row.filled == kNotFilled ? row.difference : row.filled,
                     .dwFlags = (row.filled == kNotFilled ? 0u : KxFrameFilled) |
                                (row.dark ? KxFrameDark : 0u) | (row.cut ? KxFrameCut : 0u)};
    return stats;
}

// What the attributes of kxscenes.Figures and its rows say.
Stats StatsOf(const py::object& figures) {
    Stats stats;
    stats.path = figures.attr("input").cast<std::string>();
    stats.settings.scale = {RatioOf(figures.attr("time_base")), RatioOf(figures.attr("rate"))};
    stats.settings.parameters = ParametersOf(figures.attr("parameters")).On({});
    stats.settings.notes = {{"input", stats.path}};
    const auto rows = py::array_t<FigureRow, py::array::c_style | py::array::forcecast>::ensure(figures);
    if (!rows || rows.ndim() != 1)
        throw py::error_already_set();
    const std::span<const FigureRow> all(rows.data(), static_cast<std::size_t>(rows.size()));
    for (const FigureRow& row : all)
        stats.rows.push_back(StatsRowOf(row));
    RequireRows(stats);
    return stats;
}

// The arguments of kxscenes.Figures.
py::dict FiguresOf(const Stats& stats, const std::string& input) {
    py::dict figures;
    figures["rows"] = ArrayOf(stats.rows);
    figures["input"] = input;
    figures["time_base"] = FractionOf(stats.settings.scale.unit.num, stats.settings.scale.unit.den);
    figures["rate"] = FractionOf(stats.settings.scale.rate.num, stats.settings.scale.rate.den);
    figures["parameters"] = DictOf(stats.settings.parameters);
    return figures;
}

py::tuple Decide(const py::object& figures, const py::dict& parameters,
                 const std::optional<std::string>& shortest, const std::string& shortScenes) {
    Stats stats = StatsOf(figures);
    const DetectionParameters chosen = SettledParametersOf(parameters).On(stats.settings.parameters);
    SceneTable table = TableOf({stats.path, stats.settings.scale, {}, {}, {}});
    py::list scenes;
    for (const FoundScene& scene : DecideScenes(stats, chosen, {}, LengthOf(shortest, shortScenes)).scenes)
        scenes.append(SceneOf(scene, table.scale));
    return py::make_tuple(scenes, VideoOf(table, EndOf(stats).place));
}

void Save(const py::object& figures, const std::string& path) {
    const Stats stats = StatsOf(figures);
    OutputFile file(path, Existing::Replace);
    StatsWriter writer(stats.settings, [&file](std::string_view text) { file.Write(text); });
    for (const StatsRow& row : stats.rows)
        writer.Add(row);
    writer.Finish();
    file.Commit();
}

} // namespace

py::array_t<FigureRow> ArrayOf(const std::vector<StatsRow>& rows) {
    py::array_t<FigureRow> array(static_cast<py::ssize_t>(rows.size()));
    std::ranges::transform(rows, array.mutable_data(), RowOf);
    return array;
}

py::dict DictOf(const DetectionParameters& parameters) {
    py::dict dict;
    for (std::size_t i = 0; i < kDetectionParameters.size(); ++i)
        dict[py::str(KeywordOf(i))] = kDetectionParameters[i].Of(parameters);
    return dict;
}

ParameterChoice ParametersOf(const py::dict& parameters) {
    ParameterChoice choice;
    for (const auto& [name, value] : parameters) {
        const auto word = name.cast<std::string>();
        if (word == "area") {
            const auto text = value.cast<std::string>();
            if (const std::string fault = AreaFault(text); !fault.empty())
                throw py::value_error(fault);
            choice.area = ParseArea(text);
            continue;
        }
        std::size_t i = 0;
        while (i < kDetectionParameters.size() && KeywordOf(i) != word)
            ++i;
        if (i == kDetectionParameters.size())
            throw py::value_error(word + " is not a parameter of the picture comparison");
        const ParameterRange& range = kDetectionParameters[i];
        const auto number = value.cast<std::int64_t>();
        if (number < range.least || number > range.most)
            throw py::value_error(word + " is " + std::to_string(number) + ", not a whole number of " +
                                  std::to_string(range.least) + " to " + std::to_string(range.most));
        choice.values[i] = static_cast<std::int32_t>(number);
    }
    return choice;
}

std::optional<TimePoint> PointOf(const std::optional<std::string>& text) {
    return text ? std::optional(ParseTimePoint(*text)) : std::nullopt;
}

SceneLength LengthOf(const std::optional<std::string>& least, const std::string& rule) {
    const auto known = std::ranges::find(kShortRules, rule);
    if (known == kShortRules.end())
        throw py::value_error(rule + " is nothing to do with short scenes");
    return {PointOf(least), static_cast<ShortRule>(known - kShortRules.begin())};
}

ParameterChoice SettledParametersOf(const py::dict& parameters) {
    ParameterChoice choice = ParametersOf(parameters);
    if (choice.area && !choice.area->IsInPercent())
        throw py::value_error("the size of the pictures is not known here, so an area is given in per cent");
    choice.SettleArea(kAnySize, kAnySize);
    return choice;
}

void BindFigures(py::module_& module) {
    PYBIND11_NUMPY_DTYPE(FigureRow, frame, difference, level, filled, dark, cut, sample, time, byte);
    module.def("decide", Decide, py::arg("figures"), py::arg("parameters"), py::arg("min_scene"),
               py::arg("short_scenes"));
    module.def("save_figures", Save, py::arg("figures"), py::arg("path"));
    module.def(
        "read_figures",
        [](const std::string& path) {
            const Stats stats = ReadStats(path);
            if (stats.settings.isPart)
                throw HostError(path + ": is a part of a film; kxscenes --from-stats joins parts");
            return FiguresOf(stats, InputOf(stats));
        },
        py::arg("path"));
    module.def(
        "default_parameters", [] { return DictOf({}); }, "What runs are judged by that say nothing else.");
    module.def(
        "parameters", [](const py::dict& given) { return DictOf(SettledParametersOf(given).On({})); },
        py::arg("given"));
}

} // namespace scenedetect
