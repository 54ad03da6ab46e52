// Scene detection for frames that Python has, over the C interface.
#include "library/kxscenes.h"
#include "python/Conversion.h"
#include "python/FigureRows.h"
#include "reading/base/HostError.h"
#include "scenes/ParameterNames.h"

#include <pybind11/stl.h>

#include <array>
#include <cstdlib>
#include <memory>
#include <new>
#include <string>
#include <utility>
#include <vector>

namespace py = pybind11;

namespace scenedetect {
namespace {

constexpr int kColours = 3;
constexpr int kCountingBits = 8;

void Require(std::int32_t result) {
    if (result == KXSCENES_OK || result == KXSCENES_NOTHING)
        return;
    if (result == KXSCENES_ERROR_MEMORY)
        throw std::bad_alloc();
    if (result == KXSCENES_ERROR_VALUE || result == KXSCENES_ERROR_STRIDE || result == KXSCENES_ERROR_CHANGED)
        throw py::value_error(kxscenes_error_text(result));
    throw HostError(kxscenes_error_text(result));
}

template <class Structure>
Structure Sized() {
    Structure structure{};
    structure.struct_size = sizeof structure;
    return structure;
}

// In the order of KxDetectionParameter.
constexpr std::array kParameters = {
    &kxscenes_settings::cut_threshold, &kxscenes_settings::dark_level,    &kxscenes_settings::clamp,
    &kxscenes_settings::votes,         &kxscenes_settings::longest_scene, &kxscenes_settings::area_left,
    &kxscenes_settings::area_top,      &kxscenes_settings::area_width,    &kxscenes_settings::area_height};
static_assert(kParameters.size() == kDetectionParameters.size());

void Choose(kxscenes_settings& settings, const py::dict& parameters) {
    const ParameterChoice choice = SettledParametersOf(parameters);
    for (std::size_t i = 0; i < kParameters.size(); ++i)
        settings.*kParameters[i] = choice.values[i].value_or(settings.*kParameters[i]);
}

py::object RecordedAt(const kxscenes_recorded& recorded) {
    if (recorded.year < 0 || recorded.hours < 0)
        return py::none();
    return DatetimeOf(
        {recorded.year, recorded.month, recorded.day, recorded.hours, recorded.minutes, recorded.seconds});
}

class PythonDetector {
  public:
    PythonDetector(int method, int interval, const py::object& rate, bool keepsFigures,
                   const py::dict& parameters)
        : m_keepsFigures(keepsFigures) {
        auto settings = Sized<kxscenes_settings>();
        Require(kxscenes_default_settings(&settings));
        const Ratio ratio = RatioOf(rate);
        settings.method = method;
        settings.interval = interval;
        settings.rate_numerator = ratio.num;
        settings.rate_denominator = ratio.den;
        settings.keep_figures = keepsFigures;
        Choose(settings, parameters);
        kxscenes_detector* detector = nullptr;
        Require(kxscenes_create(&settings, &detector));
        m_detector.reset(detector);
    }

    // A row of 8-bit or 16-bit luma, or three bytes a pixel. Read where it lies if its pixels are without
    // gaps.
    py::list Push(py::array picture, int bits) {
        const bool isWide = picture.dtype().kind() == 'u' && picture.itemsize() == 2;
        const bool isByte = picture.dtype().kind() == 'u' && picture.itemsize() == 1;
        const bool isLuma = picture.ndim() == 2 && (isByte || isWide);
        if (!isLuma && !(isByte && picture.ndim() == 3 && picture.shape(2) == kColours))
            throw py::value_error("a frame is an array of height x width (uint8 or uint16) or height x width "
                                  "x 3 (uint8)");
        if (isWide && (bits < kCountingBits || bits > 2 * kCountingBits))
            throw py::value_error("frames of 16-bit samples need bits, 8 to 16");
        const py::ssize_t pixel = isLuma ? picture.itemsize() : kColours;
        const bool isDense = picture.strides(1) == pixel && (isLuma || picture.strides(2) == 1) &&
                             std::abs(picture.strides(0)) >= picture.shape(1) * pixel;
        if (!isDense)
            picture = py::array::ensure(picture, py::array::c_style);
        auto frame = Sized<kxscenes_frame>();
        frame.format = !isLuma ? KXSCENES_RGB24 : isWide ? KXSCENES_LUMA16 : KXSCENES_LUMA8;
        frame.width = ToInt(picture.shape(1));
        frame.height = ToInt(picture.shape(0));
        frame.shift = isWide ? bits - kCountingBits : 0;
        frame.stride = picture.strides(0);
        frame.data = picture.data();
        return PushFrame(frame);
    }

    py::list PushDv(const py::buffer& bytes) {
        const py::buffer_info info = bytes.request();
        if (PyBuffer_IsContiguous(info.view(), 'C') == 0)
            throw py::value_error("the bytes of a DV frame are in one piece");
        auto frame = Sized<kxscenes_frame>();
        frame.format = KXSCENES_DV;
        frame.dv_size = ToInt(info.size * info.itemsize);
        frame.data = info.ptr;
        return PushFrame(frame);
    }

    void Mark() { Require(kxscenes_mark(m_detector.get())); }
    void End() {
        Require(kxscenes_end(m_detector.get()));
        TakeFigures();
    }
    void Restart() {
        Require(kxscenes_restart(m_detector.get()));
        m_figures.clear();
    }
    void Change(int method, int interval, const py::dict& parameters) {
        auto settings = Sized<kxscenes_settings>();
        Require(kxscenes_get_settings(m_detector.get(), &settings));
        settings.method = method;
        settings.interval = interval;
        Choose(settings, parameters);
        Require(kxscenes_change_settings(m_detector.get(), &settings));
    }
    [[nodiscard]] std::int32_t FrameCount() const {
        std::int32_t frames = 0;
        Require(kxscenes_frame_count(m_detector.get(), &frames));
        return frames;
    }
    // Of the run so far, as far as they are final.
    [[nodiscard]] py::array_t<FigureRow> Figures() const { return ArrayOf(m_figures); }

  private:
    static int ToInt(py::ssize_t number) {
        if (!std::in_range<int>(number))
            throw py::value_error("a frame is too large");
        return static_cast<int>(number);
    }

    // (frame, recorded, method) of each scene that this frame settles.
    py::list PushFrame(kxscenes_frame& frame) {
        frame.time = KXSCENES_NO_TIME;
        std::int32_t result = KXSCENES_OK;
        {
            const py::gil_scoped_release release;
            result = kxscenes_push(m_detector.get(), &frame);
        }
        Require(result);
        if (m_keepsFigures)
            TakeFigures();
        py::list scenes;
        for (auto scene = Sized<kxscenes_scene>();
             kxscenes_take_scene(m_detector.get(), &scene) == KXSCENES_OK;)
            scenes.append(py::make_tuple(scene.frame, RecordedAt(scene.recorded), scene.method));
        return scenes;
    }

    void TakeFigures() {
        std::array<kxscenes_figures, 8> taken{};
        taken[0].struct_size = sizeof taken[0];
        for (std::int32_t count = 0;
             kxscenes_take_figures(m_detector.get(), taken.data(), static_cast<std::int32_t>(taken.size()),
                                   &count) == KXSCENES_OK;)
            for (const kxscenes_figures& each : std::span(taken).first(static_cast<std::size_t>(count)))
                m_figures.push_back({{each.frame, each.frame, -1},
                                     {.dwPosition = static_cast<ULONG>(each.frame),
                                      .nDifference = each.difference,
                                      .nLevel = each.level,
                                      .nFilled = each.filled,
                                      .dwFlags = static_cast<ULONG>(each.flags)}});
    }

    struct Destroy {
        void operator()(kxscenes_detector* detector) const { kxscenes_destroy(detector); }
    };

    const bool m_keepsFigures;
    std::unique_ptr<kxscenes_detector, Destroy> m_detector;
    std::vector<StatsRow> m_figures;
};

} // namespace

void BindFrames(py::module_& module) {
    static_assert(int{KXSCENES_FILLED} == int{KxFrameFilled} && int{KXSCENES_DARK} == int{KxFrameDark} &&
                  int{KXSCENES_CUT} == int{KxFrameCut});
    py::class_<PythonDetector>(module, "Detector")
        .def(py::init<int, int, py::object, bool, py::dict>(), py::arg("method"), py::arg("interval"),
             py::arg("rate"), py::arg("figures"), py::arg("parameters"))
        .def("push", &PythonDetector::Push, py::arg("picture"), py::arg("bits"))
        .def("push_dv", &PythonDetector::PushDv, py::arg("bytes"))
        .def("mark", &PythonDetector::Mark)
        .def("end", &PythonDetector::End)
        .def("restart", &PythonDetector::Restart)
        .def("change", &PythonDetector::Change, py::arg("method"), py::arg("interval"), py::arg("parameters"))
        .def("frame_count", &PythonDetector::FrameCount)
        .def("figures", &PythonDetector::Figures);
    module.def(
        "timecode",
        [](std::int64_t frame, const py::object& rate) {
            const Ratio ratio = RatioOf(rate);
            return TimecodeText(frame, {ratio.Inverse(), ratio});
        },
        py::arg("frame"), py::arg("rate"));
}

} // namespace scenedetect
