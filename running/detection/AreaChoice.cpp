#include "running/detection/AreaChoice.h"

#include "engine/decision/DetectionParameters.h"
#include "reading/base/HostError.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <string_view>

namespace scenedetect {
namespace {

constexpr double kHundred = 100;
constexpr double kMostPixels = 1 << 30;

[[noreturn]] void Refuse(const std::string& text) {
    throw HostError("no area: " + text + "; write X,Y,W,H in pixels or per cent, such as 0,0,100%,85%");
}

AreaChoice::Number ParseNumber(std::string_view word, const std::string& text) {
    AreaChoice::Number number;
    number.isPercent = word.ends_with('%');
    word.remove_suffix(number.isPercent ? 1 : 0);
    const auto [stop, error] =
        std::from_chars(word.data(), word.data() + word.size(), number.value, std::chars_format::fixed);
    if (error != std::errc() || stop != word.data() + word.size() || !(number.value >= 0) ||
        number.value > (number.isPercent ? kHundred : kMostPixels) ||
        (!number.isPercent && number.value != std::floor(number.value)))
        Refuse(text);
    return number;
}

} // namespace

bool AreaChoice::IsInPercent() const {
    return std::ranges::all_of(numbers, [](const Number& each) { return each.isPercent || each.value == 0; });
}

AreaChoice ParseArea(const std::string& text) {
    AreaChoice area;
    area.text = text;
    std::string_view rest = text;
    for (std::size_t i = 0; i < area.numbers.size(); ++i) {
        const std::size_t comma = i + 1 < area.numbers.size() ? rest.find(',') : rest.size();
        if (comma == std::string_view::npos)
            Refuse(text);
        area.numbers[i] = ParseNumber(rest.substr(0, comma), text);
        rest.remove_prefix(std::min(comma + 1, rest.size()));
    }
    if (area.numbers[2].value == 0 || area.numbers[3].value == 0)
        throw HostError("the area " + text + " is empty");
    if (area.IsInPercent())
        for (const bool isDown : {false, true})
            (void)ExtentOf(area, isDown, kWholeArea, kWholeArea);
    return area;
}

std::string AreaFault(const std::string& text) {
    try {
        (void)ParseArea(text);
        return "";
    } catch (const HostError& error) {
        return error.what();
    }
}

AreaExtent ExtentOf(const AreaChoice& area, bool isDown, int seen, int stored) {
    const auto mille = [seen](const AreaChoice::Number& number) {
        return number.isPercent ? number.value * (kWholeArea / kHundred) : number.value * kWholeArea / seen;
    };
    const double begin = mille(area.numbers[isDown ? 1 : 0]);
    const double end = begin + mille(area.numbers[isDown ? 3 : 2]);
    constexpr double kTolerance = 1e-6; // of sums of fractions
    if (begin >= kWholeArea ||
        end > std::max(mille({static_cast<double>(stored)}), 1.0 * kWholeArea) + kTolerance)
        throw HostError("the area " + area.text + " reaches beyond the picture" +
                        (area.IsInPercent() ? ""
                                            : ", which is " + std::to_string(stored) + " pixels " +
                                                  (isDown ? "high" : "wide")));
    const int start = std::min(static_cast<int>(std::lround(begin)), kWholeArea - 1);
    return {start, std::clamp(static_cast<int>(std::lround(end)), start + 1, kWholeArea) - start};
}

} // namespace scenedetect
