#include "running/detection/DetectionSettings.h"

#include <algorithm>
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

DetectionParameters ParameterChoice::On(DetectionParameters base) const {
    for (std::size_t i = 0; i < values.size(); ++i)
        base.*kDetectionParameters[i].value = values[i].value_or(base.*kDetectionParameters[i].value);
    return base;
}

bool DetectionSettings::Uses(KxDetectionMethod method) const {
    return std::find(methods.begin(), methods.end(), method) != methods.end();
}

std::string DetectionSettings::MethodWords(const char* separator) const {
    std::string words;
    for (const KxDetectionMethod method : methods)
        words += (words.empty() ? "" : separator) + MethodWord(method);
    return words;
}

} // namespace scenedetect
