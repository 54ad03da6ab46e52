// The run of one file.
#include "platform/UsableCores.h"
#include "python/BackgroundRun.h"
#include "python/Conversion.h"
#include "python/FigureRows.h"
#include "running/batch/Inputs.h"

#include <pybind11/stl.h>

#include <memory>

namespace py = pybind11;

namespace scenedetect {
namespace {

// How long Python does not hear of Ctrl-C and of progress.
constexpr std::chrono::milliseconds kTurn{50};

struct RequestedRun {
    std::string path;
    std::vector<std::string> methods;
    std::vector<std::string> cuts;
    std::uint32_t interval = 0;
    std::vector<std::uint32_t> marks;
    std::optional<std::string> start;
    std::optional<std::string> end;
    std::optional<std::string> duration;
    std::optional<std::string> shortestScene;
    std::string shortScenes;
    ParameterChoice parameters;
    bool wantsFigures = false;
    bool decodesFast = false;
    TransitionChoice transitions;
};

RunSettings SettingsOf(const RequestedRun& request) {
    RunSettings settings;
    settings.input = request.path;
    for (const std::string& word : request.methods)
        settings.detection.methods.push_back(MethodOf(word).value());
    for (const std::string& word : request.cuts)
        settings.detection.cuts.push_back(TapeCutOf(word).value());
    settings.detection.interval = request.interval;
    settings.detection.marks = request.marks;
    settings.detection.parameters = request.parameters;
    settings.detection.transitions = request.transitions;
    settings.xmlPaths.resize(settings.detection.methods.size());
    settings.range = {PointOf(request.start), PointOf(request.end), PointOf(request.duration)};
    settings.length = LengthOf(request.shortestScene, request.shortScenes);
    settings.wantsFigures = request.wantsFigures;
    settings.decodesFast = request.decodesFast;
    return settings;
}

class PythonRun {
  public:
    PythonRun(const RequestedRun& request, int threads)
        : m_run(std::make_unique<BackgroundRun>(SettingsOf(request), threads)) {}
    ~PythonRun() {
        const py::gil_scoped_release release;
        m_run.reset();
    }
    PythonRun(const PythonRun&) = delete;
    PythonRun& operator=(const PythonRun&) = delete;

    // None at the end.
    py::object Next(const py::object& progress) {
        FoundScene scene;
        for (;;) {
            auto event = BackgroundRun::Event::Nothing;
            {
                const py::gil_scoped_release release;
                event = m_run->Next(scene, kTurn);
            }
            if (PyErr_CheckSignals() != 0)
                throw py::error_already_set();
            if (!progress.is_none())
                Report(progress, event == BackgroundRun::Event::End);
            if (event == BackgroundRun::Event::End)
                return py::none();
            if (event == BackgroundRun::Event::Scene)
                return SceneOf(scene, m_run->Table()->scale);
        }
    }

    [[nodiscard]] py::object Video() {
        const auto table = m_run->Table();
        return table ? py::object(VideoOf(*table, m_run->EndPlace())) : py::none();
    }
    [[nodiscard]] py::array_t<FigureRow> Figures() { return ArrayOf(m_run->TakeFigures()); }
    [[nodiscard]] py::dict Parameters() { return DictOf(m_run->Parameters()); }
    [[nodiscard]] std::vector<std::string> TakeWarnings() { return m_run->TakeWarnings(); }

  private:
    void Report(const py::object& progress, bool isOver) {
        const std::int64_t frames = m_run->Progress().frames;
        const double fraction = isOver ? 1 : m_run->Progress().fraction.load();
        if (std::exchange(m_reported, frames) == frames && !isOver)
            return;
        progress(frames, fraction < 0 ? py::object(py::none()) : py::object(py::float_(fraction)));
    }

    std::unique_ptr<BackgroundRun> m_run;
    std::int64_t m_reported = 0;
};

} // namespace

void BindRuns(py::module_& module) {
    py::class_<PythonRun>(module, "Run")
        .def(py::init([](std::string path, std::vector<std::string> methods, std::vector<std::string> cuts,
                         std::uint32_t interval, std::vector<std::uint32_t> marks,
                         std::optional<std::string> start, std::optional<std::string> end,
                         std::optional<std::string> duration, std::optional<std::string> shortestScene,
                         std::string shortScenes, const py::dict& parameters, bool wantsFigures,
                         bool decodesFast, bool dropsFlashes, const std::string& fades, bool findsDissolves,
                         int threads) {
                 return std::make_unique<PythonRun>(
                     RequestedRun{std::move(path),
                                  std::move(methods),
                                  std::move(cuts),
                                  interval,
                                  std::move(marks),
                                  std::move(start),
                                  std::move(end),
                                  std::move(duration),
                                  std::move(shortestScene),
                                  std::move(shortScenes),
                                  ParametersOf(parameters),
                                  wantsFigures,
                                  decodesFast,
                                  {dropsFlashes, FadePlaceOf(fades).value(), findsDissolves}},
                     threads);
             }),
             py::kw_only(), py::arg("path"), py::arg("methods"), py::arg("cuts") = std::vector<std::string>(),
             py::arg("interval") = 0, py::arg("marks") = std::vector<std::uint32_t>(),
             py::arg("start") = py::none(), py::arg("end") = py::none(), py::arg("duration") = py::none(),
             py::arg("min_scene") = py::none(), py::arg("short_scenes") = kShortRules.front(),
             py::arg("parameters") = py::dict(), py::arg("figures") = false, py::arg("fast") = false,
             py::arg("drop_flashes") = false, py::arg("fades") = "off", py::arg("dissolves") = false,
             py::arg("threads") = 0)
        .def("next", &PythonRun::Next, py::arg("progress") = py::none())
        .def("video", &PythonRun::Video)
        .def("figures", &PythonRun::Figures)
        .def("parameters", &PythonRun::Parameters)
        .def("take_warnings", &PythonRun::TakeWarnings);
    module.def("expand_inputs", [](const std::vector<std::string>& inputs) {
        std::vector<std::pair<py::bytes, std::string>> files;
        for (const auto& [path, fault] : ExpandInputs(inputs))
            files.emplace_back(path, fault);
        return files;
    });
    module.def("usable_cores", &UsableCores);
}

} // namespace scenedetect
