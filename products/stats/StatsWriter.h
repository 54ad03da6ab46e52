// Writes a run's figures as a CSV table while the run goes on.
#pragma once

#include "products/stats/StatsFile.h"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace scenedetect {

/// One thread at a time. Nothing grows with the length of the run.
class StatsWriter {
  public:
    /// Takes the text in blocks of whole lines, UTF-8 as far as the notes are; may throw.
    using Sink = std::function<void(std::string_view text)>;

    StatsWriter(StatsSettings settings, Sink sink);

    /// The next frame. HostError when frames were left out before it: from a table with gaps nothing could be
    /// decided.
    void Add(const StatsRow& row);
    /// What was not known from the start.
    void AddNote(StatsNote note) { m_settings.push_back(std::move(note)); }
    /// After the last frame: hands out what is left.
    void Finish();

  private:
    void AppendSetting();
    void HandOut();

    const Sink m_sink;
    std::vector<StatsNote> m_settings; // as text, in their order
    const bool m_isPart;
    const bool m_hasDistances;
    std::size_t m_nextSetting = 0;
    std::int64_t m_sampleCount = 0;
    std::string m_pending;
};

} // namespace scenedetect
