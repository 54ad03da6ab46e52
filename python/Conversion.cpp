#include "python/Conversion.h"

#include "products/files/NamePattern.h"

#include <pybind11/stl.h>

#include <limits>
#include <string>

namespace py = pybind11;

namespace scenedetect {
namespace {

constexpr std::int64_t kMicroseconds = 1'000'000;
constexpr int kQuarterTurn = 90; // degrees

// Nothing where the tape does not say both.
py::object RecordedAt(const DvPacks& tape) {
    if (!tape.date || !tape.time)
        return py::none();
    const std::chrono::hh_mm_ss time(*tape.time);
    const auto number = [](auto part) { return static_cast<int>(static_cast<unsigned>(part)); };
    return DatetimeOf({static_cast<int>(tape.date->year()), number(tape.date->month()),
                       number(tape.date->day()), static_cast<int>(time.hours().count()),
                       static_cast<int>(time.minutes().count()), static_cast<int>(time.seconds().count())});
}

} // namespace

py::object DatetimeOf(const std::array<int, 6>& parts) {
    return py::module_::import("datetime").attr("datetime")(*py::cast(parts));
}

py::object FractionOf(std::int64_t num, std::int64_t den) {
    return py::module_::import("fractions").attr("Fraction")(num, den);
}

Ratio RatioOf(const py::handle& fraction) {
    const auto num = fraction.attr("numerator").cast<std::int64_t>();
    const auto den = fraction.attr("denominator").cast<std::int64_t>();
    constexpr std::int64_t kMost = std::numeric_limits<std::int32_t>::max();
    if (num < 1 || num > kMost || den > kMost)
        throw py::value_error(py::str(fraction).cast<std::string>() +
                              " is not a fraction above 0 of two 32-bit numbers");
    return {static_cast<std::int32_t>(num), static_cast<std::int32_t>(den)};
}

py::tuple SceneOf(const FoundScene& scene, const TimeScale& scale) {
    const TapeTexts tape = TextsOf(scene.tape);
    return py::make_tuple(scene.number, scene.place.frame,
                          FractionOf(scale.unit.num, scale.unit.den) * py::int_(scene.place.time),
                          TimecodeText(scene.place.time, scale), RecordedAt(scene.tape), scene.method,
                          tape.timecode, tape.aspect, tape.audio);
}

py::dict VideoOf(const SceneTable& table, const std::optional<FilePlace>& end) {
    const Ratio unit = table.scale.unit;
    py::dict video;
    video["path"] = table.input;
    video["rate"] = FractionOf(table.scale.rate.num, table.scale.rate.den);
    video["time_base"] = FractionOf(unit.num, unit.den);
    video["width"] = table.width;
    video["height"] = table.height;
    video["pixel_aspect"] = FractionOf(table.pixelAspect.num, table.pixelAspect.den);
    video["rotation"] = table.quarterTurns * kQuarterTurn;
    video["delay"] = FractionOf(table.delay, kMicroseconds);
    if (table.audio)
        video["audio"] = py::make_tuple(table.audio->channels, table.audio->sampleRate);
    if (table.startTimecode)
        video["start_timecode"] = py::make_tuple(table.startTimecode->frame, table.startTimecode->isDropFrame,
                                                 table.startTimecode->framesPerSecond);
    if (end) {
        video["frame_count"] = end->frame;
        video["duration"] = FractionOf(unit.num, unit.den) * py::int_(end->time);
    }
    video["partial"] = table.partial;
    return video;
}

SceneTable TableOfVideo(const py::handle& video) {
    SceneTable table;
    table.input = video.attr("path").cast<std::string>();
    table.name = NameOfInput(table.input);
    table.scale = {RatioOf(video.attr("time_base")), RatioOf(video.attr("rate"))};
    table.width = video.attr("width").cast<int>();
    table.height = video.attr("height").cast<int>();
    table.pixelAspect = RatioOf(video.attr("pixel_aspect"));
    table.quarterTurns = video.attr("rotation").cast<int>() / kQuarterTurn;
    const py::object delay = video.attr("delay");
    table.delay = py::int_(delay * py::int_(kMicroseconds)).cast<std::int64_t>();
    if (const py::object audio = video.attr("audio"); !audio.is_none())
        table.audio = {audio[py::int_(0)].cast<int>(), audio[py::int_(1)].cast<int>()};
    if (const py::object first = video.attr("start_timecode"); !first.is_none()) {
        table.startTimecode = {first[py::int_(0)].cast<std::int64_t>(), first[py::int_(1)].cast<bool>(),
                               first[py::int_(2)].cast<std::int32_t>()};
        if (table.startTimecode->framesPerSecond < 1)
            throw py::value_error("start_timecode has no frames a second");
    }
    table.frameCount = video.attr("frame_count").cast<std::int64_t>();
    table.partial = video.attr("partial").cast<std::string>();
    return table;
}

} // namespace scenedetect
