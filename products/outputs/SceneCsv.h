// The scenes as they are printed: a header line, then a line a scene.
#pragma once

#include "reading/timing/SampleTable.h"
#include "reading/timing/TimeScale.h"

#include <cstdint>
#include <string>

namespace scenedetect {

/// CSV as RFC 4180 has it, with a line feed at the end of each line.
class SceneCsv {
  public:
    /// Columns beside those that are always there.
    struct Columns {
        bool file = false;   ///< in front: which input
        bool method = false; ///< at the end: what found the scene
    };

    [[nodiscard]] static std::string Header(const Columns& columns);

    SceneCsv(const TimeScale& scale, const Columns& columns, std::string file)
        : m_scale(scale), m_columns(columns), m_file(std::move(file)) {}

    /// The line of the next scene.
    [[nodiscard]] std::string Line(const FilePlace& place, const std::string& method);
    [[nodiscard]] std::int64_t SceneCount() const { return m_count; }

  private:
    const TimeScale m_scale;
    const Columns m_columns;
    const std::string m_file;
    std::int64_t m_count = 0;
};

} // namespace scenedetect
