#include "running/batch/RunPlan.h"

#include "products/files/OutputFile.h"
#include "reading/base/HostError.h"
#include "running/batch/Inputs.h"

#include <algorithm>
#include <array>
#include <set>

namespace scenedetect {
namespace {

// The paths of one input's outputs, each claimed, and written to in principle: better to fail now than after
// hours.
class Paths {
  public:
    Paths(const std::string& input, OutputClaims& claims) : m_name(NameOfInput(input)), m_claims(claims) {}

    [[nodiscard]] std::string Settle(const std::string& pattern, const std::string& method) const {
        if (pattern.empty())
            return "";
        NameFields fields;
        fields.name = m_name;
        fields.method = method;
        std::string path = NamePattern(pattern).Expand(fields);
        m_claims.Claim(path);
        RequireWritable(path, Existing::Replace);
        return path;
    }

  private:
    const std::string m_name;
    OutputClaims& m_claims;
};

// None where scenes are found.
std::string ListOf(const std::string& input, const BatchSettings& settings) {
    NameFields fields;
    fields.name = NameOfInput(input);
    return settings.listPath.empty() ? "" : NamePattern(settings.listPath).Expand(fields);
}

} // namespace

bool RunPlan::OnlyPrints() const {
    return outputs.lists.empty() && std::ranges::all_of(run.xmlPaths, &std::string::empty) &&
           std::ranges::all_of(std::array{&outputs.reportPath, &outputs.tapeLogPath, &outputs.statsPath,
                                          &outputs.clips.folder, &outputs.pictures.folder},
                               [](const std::string* path) { return path->empty(); });
}

std::vector<RunPlan> MakePlans(const BatchSettings& settings, OutputClaims& claims) {
    const std::vector<Input> inputs = ExpandInputs(settings.inputs);
    std::set<std::string> lists;
    for (const Input& input : inputs) {
        claims.AddInput(input.path);
        const std::string list = ListOf(input.path, settings);
        claims.AddInput(list);
        if (!list.empty() && !lists.insert(list).second)
            throw HostError(list +
                            ": is the list of one input; with several, {name} in --scenes stands for the "
                            "name of each");
    }
    for (const std::string& path : settings.savedStatsPaths)
        claims.AddInput(path);
    claims.AddInput(settings.fitPath);
    claims.AddInput(settings.configPath);
    for (const std::string& folder : {settings.outputs.clips.folder, settings.outputs.pictures.folder})
        if (!folder.empty())
            RequireWritableFolder(folder);
    std::vector<RunPlan> plans;
    for (const auto& [input, fault] : inputs) {
        RunPlan& plan = plans.emplace_back(
            RunPlan{{input, settings.detection, {}, settings.range}, settings.outputs, fault});
        if (!fault.empty())
            continue;
        const Paths paths(input, claims);
        plan.run.isOneOfMany = inputs.size() > 1;
        plan.run.decodesFast = settings.decodesFast;
        plan.run.length = settings.length;
        plan.run.listPath = ListOf(input, settings);
        if (!plan.run.listPath.empty())
            plan.run.detection.methods.clear();
        plan.run.checksListFirst = !settings.outputs.clips.folder.empty();
        for (const KxDetectionMethod method : plan.run.detection.methods)
            plan.run.xmlPaths.push_back(paths.Settle(settings.xmlPath, MethodWord(method)));
        const std::string methods = plan.run.detection.WordList("+");
        OutputSettings& outputs = plan.outputs;
        for (OutputSettings::List& list : outputs.lists)
            list.path = paths.Settle(list.path, methods);
        for (std::string* path : {&outputs.reportPath, &outputs.tapeLogPath, &outputs.statsPath})
            *path = paths.Settle(*path, methods);
        plan.run.wantsFigures = !outputs.statsPath.empty() || !outputs.reportPath.empty();
        plan.run.wantsDistances = !outputs.reportPath.empty();
    }
    for (RunPlan& plan : plans)
        plan.outputs.printsScenes = !claims.HasStandardOutput() && !settings.range.part.IsChosen();
    return plans;
}

} // namespace scenedetect
