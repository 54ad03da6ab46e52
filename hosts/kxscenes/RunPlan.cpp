#include "hosts/kxscenes/RunPlan.h"

#include "hosts/files/OutputFile.h"
#include "hosts/kxscenes/Inputs.h"

#include <algorithm>

namespace scenedetect {
namespace {

// The paths of one input's outputs, each claimed, and written to in principle: better to fail now than after
// hours.
class Paths {
  public:
    Paths(const std::string& input, OutputClaims& claims) : m_name(NameOfInput(input)), m_claims(claims) {}

    [[nodiscard]] std::string Settle(const std::string& pattern, const std::string& method = "") const {
        std::string path = Claim(pattern, method);
        if (!path.empty())
            RequireWritable(path, Existing::Replace);
        return path;
    }
    // The filter writes it itself, with checks of its own.
    [[nodiscard]] std::string Claim(const std::string& pattern, const std::string& method) const {
        if (pattern.empty())
            return "";
        NameFields fields;
        fields.name = m_name;
        fields.method = method;
        std::string path = NamePattern(pattern).Expand(fields);
        m_claims.Claim(path);
        return path;
    }

  private:
    const std::string m_name;
    OutputClaims& m_claims;
};

} // namespace

bool RunPlan::WritesToStandardOutput() const {
    return std::any_of(lists.begin(), lists.end(),
                       [](const Requests::List& list) { return list.path == "-"; });
}

std::vector<RunPlan> MakePlans(const Options& options, const KxOptions& own, OutputClaims& claims) {
    const std::vector<std::string> inputs = ExpandInputs(options.inputs);
    for (const std::string& input : inputs)
        claims.AddInput(input);
    for (const std::string& folder : {own.requests.clipFolder, own.requests.pictures.folder})
        if (!folder.empty())
            RequireWritableFolder(folder);
    std::vector<RunPlan> plans;
    for (const std::string& input : inputs) {
        const Paths paths(input, claims);
        const Requests& requests = own.requests;
        RunPlan& plan = plans.emplace_back(options, own, input);
        plan.isOneOfMany = inputs.size() > 1;
        std::string allMethods;
        for (const KxDetectionMethod method : options.methods) {
            plan.filters.push_back({method, paths.Claim(options.xmlPath, MethodWord(method))});
            allMethods += (allMethods.empty() ? "" : "+") + MethodWord(method);
        }
        for (const Requests::List& list : requests.lists)
            plan.lists.push_back({paths.Settle(list.path, allMethods), list.format});
        plan.reportPath = paths.Settle(requests.reportPath, allMethods);
        plan.tapeLogPath = paths.Settle(requests.tapeLogPath, allMethods);
        plan.statsPath = paths.Settle(requests.statsPath, allMethods);
        plan.wantsFigures = !plan.statsPath.empty() || !plan.reportPath.empty();
    }
    return plans;
}

} // namespace scenedetect
