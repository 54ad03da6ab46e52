#include "running/listeners/RunWords.h"

#include "reading/base/ListText.h"
#include "scenes/ParameterNames.h"

#include <optional>

namespace scenedetect {

std::vector<std::pair<std::string, std::string>> SettingsOf(const RunSettings& run,
                                                            const DetectionParameters& parameters) {
    std::vector<std::pair<std::string, std::string>> settings = {{"input", run.input},
                                                                 {"methods", run.detection.WordList(", ")}};
    if (!run.listPath.empty())
        settings.back() = {"scenes of", run.listPath};
    const auto addNumber = [&settings](const char* name, std::int64_t value) {
        if (value != 0)
            settings.emplace_back(name, std::to_string(value));
    };
    const auto addPoint = [&settings](const char* name, const std::optional<TimePoint>& point) {
        if (point)
            settings.emplace_back(name, point->text);
    };
    addNumber("interval", run.detection.interval);
    addPoint("start", run.range.start);
    addPoint("end", run.range.end);
    addPoint("duration", run.range.duration);
    addPoint("min-scene", run.length.least);
    if (run.length.least && run.length.rule != ShortRule::Merge)
        settings.emplace_back("short-scenes", kShortRules[static_cast<std::size_t>(run.length.rule)]);
    const TransitionChoice& transitions = run.detection.transitions;
    if (transitions.dropsFlashes)
        settings.emplace_back("flashes", "drop");
    if (transitions.FindsFades())
        settings.emplace_back("fades", FadePlaceWord(transitions.fades));
    if (transitions.findsDissolves)
        settings.emplace_back("dissolves", "found");
    if (run.detection.Uses(KxMethodVideo)) {
        for (std::size_t i = 0; i < KxAreaLeft; ++i)
            settings.emplace_back(kParameterNames[i], std::to_string(kDetectionParameters[i].Of(parameters)));
        if (const auto& area = run.detection.parameters.area; area || !parameters.HasWholeArea())
            settings.emplace_back("area", area ? area->text : AreaText(parameters));
    }
    settings.emplace_back("made by", std::string("kxscenes ") + HOSTS_VERSION);
    return settings;
}

std::vector<std::string> CommandOf(const RunSettings& run, const DetectionParameters& parameters) {
    std::vector<std::string> words;
    const auto add = [&words](const char* option, const std::string& value) {
        words.insert(words.end(), {option, value});
    };
    const auto addPoint = [&add](const char* option, const std::optional<TimePoint>& point) {
        if (point)
            add(option, point->text);
    };
    const DetectionSettings& detection = run.detection;
    std::string methods;
    for (const KxDetectionMethod method : detection.methods)
        AppendToList(methods, ",", MethodWord(method));
    if (methods != MethodWord(KxMethodVideo) && !methods.empty())
        add("--method", methods);
    if (detection.interval != 0)
        add("--interval", std::to_string(detection.interval));
    std::string cuts = methods.empty() ? "" : "scenes";
    for (const TapeCut cut : detection.cuts)
        AppendToList(cuts, ",", TapeCutOption(cut));
    if (!detection.cuts.empty())
        add("--cut-at", cuts);
    std::string marks;
    for (const std::uint32_t mark : detection.marks)
        AppendToList(marks, ",", std::to_string(mark));
    if (!marks.empty())
        add("--mark", marks);
    if (parameters.diffClamp != DetectionParameters{}.diffClamp)
        add("--clamp", std::to_string(parameters.diffClamp));
    if (const auto& area = detection.parameters.area; area || !parameters.HasWholeArea())
        add("--area", area ? area->text : AreaText(parameters));
    addPoint("--start", run.range.start);
    addPoint("--end", run.range.end);
    addPoint("--duration", run.range.duration);
    if (run.decodesFast)
        add("--decode", "fast");
    if (!run.listPath.empty())
        add("--scenes", run.listPath);
    return words;
}

} // namespace scenedetect
