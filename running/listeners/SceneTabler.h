// Collects the scenes of a run, and writes the outputs that are made of them when it is over.
#pragma once

#include "products/outputs/SceneTable.h"
#include "reading/base/FirstError.h"
#include "running/run/RunListener.h"

#include <functional>
#include <string>
#include <vector>

namespace scenedetect {

/// A file that is made of the table once that is whole.
struct TableUse {
    /// Its text. `lack` takes what makes it lack something only.
    using Make = std::function<std::string(const SceneTable& table, FirstError& lack)>;

    std::string path; ///< "-" is the standard output
    Make make;
    bool isWritten = false;
};

class SceneTabler final : public RunListener {
  public:
    explicit SceneTabler(std::vector<TableUse> uses) : m_uses(std::move(uses)) {}

    void Begin(const RunInfo& info) override;
    void Scene(const FoundScene& scene) override;
    void End(const RunEnd& end) override;
    void ListOutputs(RunOutputs& outputs) const override;

  private:
    std::vector<TableUse> m_uses;
    SceneTable m_table;
};

} // namespace scenedetect
