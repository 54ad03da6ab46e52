#include "hosts/shared/ParameterOptions.h"

#include "hosts/shared/DetectionCalls.h"

#include <CLI/CLI.hpp>

#include <charconv>
#include <string>

namespace scenedetect {
namespace {

std::string RangeText(const ParameterFacts& facts) {
    return std::to_string(facts.least) + " to " + std::to_string(facts.most);
}

/// What is wrong with `word`, if anything.
std::string CheckNumber(const ParameterFacts& facts, const std::string& word) {
    std::int32_t number = 0;
    const char* const end = word.data() + word.size();
    const auto [stop, error] = std::from_chars(word.data(), end, number);
    if (error == std::errc() && stop == end && facts.Allows(number))
        return "";
    return word + " is no whole number of " + RangeText(facts);
}

} // namespace

DetectionParameters ParameterChoice::On(DetectionParameters base) const {
    for (std::size_t i = 0; i < values.size(); ++i)
        base.*kDetectionParameters[i].value = values[i].value_or(base.*kDetectionParameters[i].value);
    return base;
}

void AddParameterOptions(CLI::App& app, ParameterChoice& choice) {
    for (std::size_t i = 0; i < choice.values.size(); ++i) {
        const ParameterFacts& facts = kDetectionParameters[i];
        app.add_option(std::string("--") + facts.name, choice.values[i],
                       facts.effect + (" (" + RangeText(facts)) + "; " + std::to_string(facts.Of({})) +
                           " by default)")
            ->type_name("N")
            ->group("Tuning --method video")
            ->check([&facts](const std::string& word) { return CheckNumber(facts, word); });
    }
}

void ApplyParameters(IKxSceneDetectTuning& tuning, const ParameterChoice& choice) {
    for (std::size_t i = 0; i < choice.values.size(); ++i)
        if (choice.values[i])
            Require(tuning.SetParameter(static_cast<ULONG>(i), *choice.values[i]),
                    std::string("the scene detect filter does not take --") + kDetectionParameters[i].name +
                        ' ' + std::to_string(*choice.values[i]));
}

} // namespace scenedetect
