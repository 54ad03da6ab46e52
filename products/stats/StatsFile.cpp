#include "products/stats/StatsFile.h"

#include "reading/base/HostError.h"
#include "scenes/ParameterNames.h"

#include <algorithm>

namespace scenedetect {
namespace {

bool IsFigure(std::int64_t number) {
    return number >= 0 && number <= kMostInFigures;
}

bool IsDistance(std::int64_t number) {
    return number == kNoDistance || IsFigure(number);
}

} // namespace

std::string Quoted(std::string_view field) {
    constexpr std::size_t kMostShown = 40;
    std::string text(field.substr(0, kMostShown));
    std::ranges::replace_if(
        text, [](unsigned char letter) { return letter < ' ' || letter == 0x7F; }, '?');
    return '"' + text + (field.size() > kMostShown ? "...\"" : "\"");
}

void RequireRows(const Stats& stats) {
    const Ratio unit = stats.settings.scale.unit;
    FilePlace before{-1, 0, -1};
    for (std::size_t i = 0; i < stats.rows.size(); ++i) {
        const auto& [place, figures, distances] = stats.rows[i];
        const char* wrong =
            figures.dwPosition != i                                                       ? "sample"
            : place.frame <= before.frame || place.frame > kMostFrames                    ? "frame"
            : place.time < before.time || place.time > kMostSeconds * unit.den / unit.num ? "time"
            : place.byteOffset < -1                                                       ? "byte"
            : !IsFigure(figures.nDifference)                                              ? "difference"
            : !IsFigure(figures.nLevel)                                                   ? "level"
            : !IsFigure(figures.nFilled)                                                  ? "filled"
            : !std::ranges::all_of(distances.nDistance, IsDistance)                       ? "a distance"
            : distances.nVariance < kNoDistance || distances.nVariance > kMostVariance    ? "variance"
            : distances.nDetail < kNoDistance || distances.nDetail > kMostDetail          ? "detail"
                                                                                          : nullptr;
        if (wrong)
            throw HostError(stats.path + ", row " + std::to_string(i) + " of the figures: " + wrong +
                            " is out of its range or order");
        before = place;
    }
}

std::string InputOf(const Stats& stats) {
    for (const StatsNote& note : stats.settings.notes)
        if (note.name == "input")
            return note.value;
    return stats.path;
}

std::vector<StatsNumber> NumbersOf(StatsSettings& settings) {
    constexpr std::int32_t kMost = std::numeric_limits<std::int32_t>::max();
    TimeScale& scale = settings.scale;
    std::vector<StatsNumber> numbers = {{"unit-num", &scale.unit.num, 1, kMost},
                                        {"unit-den", &scale.unit.den, 1, kMost},
                                        {"rate-num", &scale.rate.num, 1, kMost},
                                        {"rate-den", &scale.rate.den, 1, kMost}};
    for (std::size_t i = 0; i < kDetectionParameters.size(); ++i) {
        const ParameterRange& range = kDetectionParameters[i];
        numbers.push_back({kParameterNames[i], &(settings.parameters.*range.value), range.least, range.most});
        if (i >= KxAreaLeft)
            numbers.back().absent = range.Of({});
    }
    return numbers;
}

} // namespace scenedetect
