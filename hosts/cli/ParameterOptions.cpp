#include "hosts/cli/ParameterOptions.h"

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

} // namespace scenedetect
