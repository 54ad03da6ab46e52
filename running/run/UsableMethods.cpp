#include "running/run/UsableMethods.h"

#include "reading/base/HostError.h"
#include "running/detection/DetectionCalls.h"
#include "running/run/FilterGraph.h"

#include <string>
#include <utility>
#include <vector>

namespace scenedetect {
namespace {

// Why the method can't find scenes in such pictures; empty: it can.
std::string Refusal(KxDetectionMethod method, const RunSettings& settings, const PictureFormat& format) {
    try {
        RequireComparable(format, method, settings.input);
    } catch (const HostError& error) {
        return error.what();
    }
    FilterGraph graph(format, 1);
    ChooseDetection(graph.Scenes(0), graph.ScenesEx(0), method, settings.detection);
    return graph.Connect() ? RefusalText(method, settings.input) : "";
}

} // namespace

RunSettings SettingsFor(RunSettings settings, const PictureFormat& format, const MediaInfo& media,
                        Console& console) {
    SettleArea(settings.detection.parameters, format, media, settings.input);
    std::vector<KxDetectionMethod> methods;
    std::vector<std::string> xmlPaths;
    std::vector<std::string> refusals;
    for (std::size_t i = 0; i < settings.detection.methods.size(); ++i) {
        const KxDetectionMethod method = settings.detection.methods[i];
        if (const std::string refusal = Refusal(method, settings, format); !refusal.empty()) {
            refusals.push_back(refusal);
            continue;
        }
        methods.push_back(method);
        xmlPaths.push_back(settings.xmlPaths[i]);
    }
    std::vector<TapeCut>& cuts = settings.detection.cuts;
    if (!cuts.empty() && format.fourcc != kDvFourcc) {
        refusals.push_back(settings.input + ": --cut-at " + TapeCutOption(cuts.front()) +
                           " needs DV video of 25 Mbit/s");
        cuts.clear();
    }
    if (methods.empty() && cuts.empty() && !refusals.empty())
        throw HostError(refusals.front());
    for (const std::string& refusal : refusals)
        console.Warning(refusal + ": skipped");
    settings.detection.methods = std::move(methods);
    settings.xmlPaths = std::move(xmlPaths);
    return settings;
}

} // namespace scenedetect
