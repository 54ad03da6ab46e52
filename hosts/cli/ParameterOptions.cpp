#include "hosts/cli/ParameterOptions.h"

#include "scenes/ParameterNames.h"

#include <CLI/CLI.hpp>

#include <array>
#include <charconv>
#include <string>

namespace scenedetect {
namespace {

std::string RangeText(const ParameterRange& range) {
    return std::to_string(range.least) + " to " + std::to_string(range.most);
}

/// What is wrong with `word`, if anything.
std::string CheckNumber(const ParameterRange& range, const std::string& word) {
    std::int32_t number = 0;
    const char* const end = word.data() + word.size();
    const auto [stop, error] = std::from_chars(word.data(), end, number);
    if (error == std::errc() && stop == end && range.Allows(number))
        return "";
    return word + " is not a whole number of " + RangeText(range);
}

} // namespace

void AddParameterOptions(CLI::App& app, ParameterChoice& choice) {
    for (std::size_t i = 0; i < kParameterEffects.size(); ++i) {
        const ParameterRange& range = kDetectionParameters[i];
        app.add_option(std::string("--") + kParameterNames[i], choice.values[i],
                       kParameterEffects[i] + (" (" + RangeText(range)) + "; " +
                           std::to_string(range.Of({})) + " by default)")
            ->type_name("N")
            ->group("Tuning --method video")
            ->check([&range](const std::string& word) { return CheckNumber(range, word); });
    }
    app.add_option_function<std::string>(
           "--area", [&choice](const std::string& text) { choice.area = ParseArea(text); },
           "Compare this part of the picture only, in pixels or per cent: without a clock, a ticker or black "
           "bars "
           "(0,0,100%,85%)")
        ->type_name("X,Y,W,H")
        ->group("Tuning --method video")
        ->check(AreaFault);
}

void AddTransitionOptions(CLI::App& app, TransitionChoice& choice) {
    constexpr const char* kGroup = "Tuning --method video";
    app.add_option_function<std::string>(
           "--flashes", [&choice](const std::string& word) { choice.dropsFlashes = word == "drop"; },
           "Whether cuts at flashes, after which the picture comes back within four frames, begin scenes; "
           "keep "
           "unless told")
        ->type_name("keep|drop")
        ->group(kGroup)
        ->check(CLI::IsMember({"keep", "drop"}));
    app.add_option_function<std::string>(
           "--fades", [&choice](const std::string& word) { choice.fades = FadePlaceOf(word).value(); },
           "Where in a fade through black or white one scene begins, whatever the dark level: with the first "
           "black or white frame, in the middle of them, after the last; off unless told")
        ->type_name("off|start|middle|end")
        ->group(kGroup)
        ->check(
            [](const std::string& word) { return FadePlaceOf(word) ? "" : "no place in a fade: " + word; });
    app.add_flag("--dissolves", choice.findsDissolves,
                 "Find gradual changes from one picture to another, too")
        ->group(kGroup);
}

} // namespace scenedetect
