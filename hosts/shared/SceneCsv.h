// The scenes on standard output: a header line and a line a scene.
#pragma once

#include "hosts/shared/SampleTable.h"
#include "hosts/shared/TimeScale.h"

#include <cstdint>
#include <string>

namespace scenedetect {

/// Lines are collected by Add and go out with Flush, so that a reader sees whole lines. One thread at a time.
class SceneCsv {
  public:
    explicit SceneCsv(const TimeScale& scale);

    void Add(const FilePlace& place);
    [[nodiscard]] bool HasLines() const { return !m_pending.empty(); }
    /// Writes what was collected. HostError when that fails.
    void Flush();

    [[nodiscard]] std::int64_t SceneCount() const { return m_count; }

  private:
    const TimeScale m_scale;
    std::string m_pending = "scene,frame,timecode,seconds\n";
    std::int64_t m_count = 0;
};

} // namespace scenedetect
