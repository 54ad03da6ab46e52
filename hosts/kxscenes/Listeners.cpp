#include "hosts/kxscenes/Listeners.h"

#include "hosts/kxscenes/ClipMaker.h"
#include "hosts/kxscenes/PictureTaker.h"
#include "hosts/kxscenes/ReportWriter.h"
#include "hosts/kxscenes/SceneTabler.h"
#include "hosts/kxscenes/StatsLogger.h"
#include "hosts/kxscenes/TapeLogger.h"

namespace scenedetect {
namespace {

std::vector<std::pair<std::string, std::string>> SettingsOf(const RunPlan& plan,
                                                            const DetectionParameters& parameters) {
    std::string methods;
    bool isVideo = false;
    for (const FilterPlan& filter : plan.filters) {
        methods += (methods.empty() ? "" : ", ") + MethodWord(filter.method);
        isVideo = isVideo || filter.method == KxMethodVideo;
    }
    const Requests& requests = plan.own.requests;
    std::vector<std::pair<std::string, std::string>> settings = {{"input", plan.input}, {"methods", methods}};
    const auto add = [&settings](const char* name, const std::string& value) {
        if (!value.empty() && value != "0")
            settings.emplace_back(name, value);
    };
    add("interval", std::to_string(plan.options.interval));
    add("start", requests.start);
    add("end", requests.end);
    add("duration", requests.duration);
    add("min-scene", std::to_string(requests.shortestScene));
    if (isVideo)
        for (const ParameterFacts& facts : kDetectionParameters)
            settings.emplace_back(facts.name, std::to_string(facts.Of(parameters)));
    settings.emplace_back("made by", std::string("kxscenes ") + HOSTS_VERSION);
    return settings;
}

} // namespace

std::vector<std::unique_ptr<RunListener>> MakeTableListeners(const RunPlan& plan,
                                                             const DetectionParameters& parameters) {
    std::vector<std::unique_ptr<RunListener>> listeners;
    std::vector<TableUse> uses;
    for (const Requests::List& list : plan.lists)
        uses.push_back(WriteTableTo(list.path, *list.format));
    if (!plan.reportPath.empty()) {
        const auto timeline = std::make_shared<Timeline>();
        listeners.push_back(std::make_unique<TimelineKeeper>(timeline));
        const bool isFile = plan.own.requests.savedStatsPath.empty() && plan.input != "-";
        uses.push_back(
            WriteReport({plan.reportPath, parameters, SettingsOf(plan, parameters), isFile}, timeline));
    }
    if (!uses.empty())
        listeners.push_back(std::make_unique<SceneTabler>(plan.own.requests.shortestScene, std::move(uses)));
    return listeners;
}

std::vector<std::unique_ptr<RunListener>> MakeListeners(const RunPlan& plan, OutputClaims& claims,
                                                        Console& console, RunProgress& progress) {
    const Requests& requests = plan.own.requests;
    const DetectionParameters parameters = requests.parameters.On({});
    auto listeners = MakeTableListeners(plan, parameters);
    if (!plan.tapeLogPath.empty())
        listeners.push_back(std::make_unique<TapeLogger>(plan.tapeLogPath));
    if (!plan.statsPath.empty())
        listeners.push_back(std::make_unique<StatsLogger>(plan.statsPath, parameters));
    if (!requests.clipFolder.empty())
        listeners.push_back(std::make_unique<ClipMaker>(
            ClipSettings{requests.clipFolder, NamePattern(requests.names),
                         requests.replacesFiles ? Existing::Replace : Existing::Keep, requests.container},
            claims, console, progress));
    if (!requests.pictures.folder.empty())
        listeners.push_back(std::make_unique<PictureTaker>(requests.pictures, claims, console, progress));
    return listeners;
}

} // namespace scenedetect
