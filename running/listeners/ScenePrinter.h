// Prints the scenes of a run as they are found.
#pragma once

#include "products/outputs/SceneCsv.h"
#include "running/listeners/OrderedOutput.h"
#include "running/run/RunListener.h"

#include <cstddef>
#include <optional>

namespace scenedetect {

/// `output` must outlive the object.
class ScenePrinter final : public RunListener {
  public:
    ScenePrinter(OrderedOutput& output, std::size_t run, const SceneCsv::Columns& columns)
        : m_output(output), m_run(run), m_columns(columns) {}

    void Begin(const RunInfo& info) override {
        m_csv.emplace(info.scale, m_columns, info.input);
        m_output.Print(m_run, "");
    }
    void Scene(const FoundScene& scene) override {
        m_output.Print(m_run, m_csv->Line(scene.place, scene.method));
    }

  private:
    OrderedOutput& m_output;
    const std::size_t m_run;
    const SceneCsv::Columns m_columns;
    std::optional<SceneCsv> m_csv;
};

} // namespace scenedetect
