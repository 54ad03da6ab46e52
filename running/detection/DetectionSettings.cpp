#include "running/detection/DetectionSettings.h"

#include <algorithm>
#include <iterator>
#include <utility>

namespace scenedetect {
namespace {

constexpr std::pair<KxDetectionMethod, const char*> kMethodWords[] = {{KxMethodTimestamp, "timestamp"},
                                                                      {KxMethodVideo, "video"},
                                                                      {KxMethodInterval, "interval"},
                                                                      {KxMethodManual, "manual"}};

} // namespace

std::string MethodWord(KxDetectionMethod method) {
    for (const auto& [each, name] : kMethodWords)
        if (each == method)
            return name;
    return "";
}

std::optional<KxDetectionMethod> MethodOf(const std::string& word) {
    for (const auto& [method, name] : kMethodWords)
        if (word == name)
            return method;
    return std::nullopt;
}

std::string KindWord(SceneKind kind) {
    return kind == SceneKind::Fade       ? "fade"
           : kind == SceneKind::Dissolve ? "dissolve"
                                         : MethodWord(KxMethodVideo);
}

std::string FadePlaceWord(FadePlace place) {
    return kFadeWords[static_cast<std::size_t>(place)];
}

std::optional<FadePlace> FadePlaceOf(const std::string& word) {
    const auto found = std::ranges::find(kFadeWords, word);
    return found != std::end(kFadeWords)
               ? std::optional(static_cast<FadePlace>(found - std::begin(kFadeWords)))
               : std::nullopt;
}

std::string TapeCutOption(TapeCut cut) {
    return cut == TapeCut::Recording ? "recordings" : TapeCutWord(cut);
}

std::optional<TapeCut> TapeCutOf(const std::string& option) {
    for (std::size_t i = 0; i < kTapeCuts; ++i)
        if (const auto cut = static_cast<TapeCut>(i); TapeCutOption(cut) == option)
            return cut;
    return std::nullopt;
}

void ParameterChoice::SettleArea(PictureSize seen, PictureSize stored) {
    if (!area)
        return;
    const AreaExtent across = ExtentOf(*area, false, seen.width, stored.width);
    const AreaExtent down = ExtentOf(*area, true, seen.height, stored.height);
    values[KxAreaLeft] = across.start;
    values[KxAreaTop] = down.start;
    values[KxAreaWidth] = across.length;
    values[KxAreaHeight] = down.length;
}

DetectionParameters ParameterChoice::On(DetectionParameters base) const {
    for (std::size_t i = 0; i < values.size(); ++i)
        base.*kDetectionParameters[i].value = values[i].value_or(base.*kDetectionParameters[i].value);
    return base;
}

bool DetectionSettings::Uses(KxDetectionMethod method) const {
    return std::find(methods.begin(), methods.end(), method) != methods.end();
}

std::vector<std::string> DetectionSettings::Words() const {
    std::vector<std::string> words;
    std::ranges::transform(methods, std::back_inserter(words), MethodWord);
    std::ranges::transform(cuts, std::back_inserter(words), TapeCutWord);
    if (transitions.FindsFades())
        words.push_back(KindWord(SceneKind::Fade));
    if (transitions.findsDissolves)
        words.push_back(KindWord(SceneKind::Dissolve));
    return words;
}

std::string DetectionSettings::WordList(const char* separator) const {
    std::string list;
    for (const std::string& word : Words())
        list += (list.empty() ? "" : separator) + word;
    return list;
}

} // namespace scenedetect
