// Collects the scenes of a run, and writes the outputs that are made of them when it is over.
#pragma once

#include "products/outputs/OutputFormats.h"
#include "products/outputs/SceneTable.h"
#include "running/run/RunListener.h"

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

namespace scenedetect {

/// What is made of the table once it is whole.
using TableUse = std::function<void(const SceneTable& table)>;

class SceneTabler final : public RunListener {
  public:
    /// Scenes shorter than `shortest` frames are merged into others.
    SceneTabler(std::int64_t shortest, std::vector<TableUse> uses)
        : m_shortest(shortest), m_uses(std::move(uses)) {}

    void Begin(const RunInfo& info) override;
    void Scene(const FoundScene& scene) override;
    void End(const RunEnd& end) override;

  private:
    const std::int64_t m_shortest;
    const std::vector<TableUse> m_uses;
    SceneTable m_table;
};

/// Writes the table in this format; "-" is the standard output.
[[nodiscard]] TableUse WriteTableTo(std::string path, const OutputFormat& format);

} // namespace scenedetect
