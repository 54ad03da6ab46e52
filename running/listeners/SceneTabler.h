// Collects the scenes of a run, and writes the outputs that are made of them when it is over.
#pragma once

#include "products/outputs/SceneTable.h"
#include "reading/base/FirstError.h"
#include "running/listeners/RecordingTimes.h"
#include "running/run/RunListener.h"

#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace scenedetect {

/// The table of a run that begins, without its scenes.
[[nodiscard]] SceneTable TableOf(const RunInfo& info);
void AddScene(SceneTable& table, const FoundScene& scene);
/// The last scene, unless it has ended already, ends before this place.
void EndScene(SceneTable& table, const FilePlace& place);
/// The last scene ends where the run does, unless it has already.
void EndTable(SceneTable& table, const RunEnd& end);

/// A file that is made of the table once that is whole.
struct TableUse {
    /// Its text. `lack` takes what makes it lack something only.
    using Make = std::function<std::string(const SceneTable& table, FirstError& lack)>;

    std::string path; ///< "-" is the standard output
    Make make;
    bool needsRecorded = false; ///< the recording times of DV
    bool isWritten = false;
};

class SceneTabler final : public RunListener {
  public:
    explicit SceneTabler(std::vector<TableUse> uses) : m_uses(std::move(uses)) {}

    void Begin(const RunInfo& info) override;
    void Scene(const FoundScene& scene) override { AddScene(m_table, scene); }
    void Gap(std::int64_t /*sample*/, const FilePlace& place) override { EndScene(m_table, place); }
    void Passed(PictureSample& sample, std::int64_t index) override;
    void End(const RunEnd& end) override;
    void ListOutputs(RunOutputs& outputs) const override;

  private:
    std::vector<TableUse> m_uses;
    SceneTable m_table;
    std::optional<RecordingTimes> m_recorded; // where they are needed
};

} // namespace scenedetect
