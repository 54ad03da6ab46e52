// Writes the figures of a run while it goes.
#pragma once

#include "products/files/OutputFile.h"
#include "products/stats/StatsPart.h"
#include "products/stats/StatsWriter.h"
#include "running/run/RunListener.h"

#include <optional>
#include <string>

namespace scenedetect {

class StatsLogger final : public RunListener {
  public:
    /// `part`: which of the input the run is about, where it is not the whole.
    explicit StatsLogger(std::string path, bool hasDistances, const PartChoice& part = {})
        : m_path(std::move(path)), m_hasDistances(hasDistances), m_part(part) {}

    void Begin(const RunInfo& info) override;
    void Passed(PictureSample& sample, std::int64_t index) override;
    void Figures(const FilePlace& place, const KxFrameFigures& figures,
                 const KxFrameDistances& distances) override {
        m_writer->Add({place, figures, distances});
    }
    void End(const RunEnd& end) override;
    void ListOutputs(RunOutputs& outputs) const override { outputs.Add(NameOfOutput(m_path), m_isWritten); }

  private:
    void NoteEnds(const RunEnd& end);

    const std::string m_path;
    const bool m_hasDistances;
    const PartChoice m_part;
    std::optional<OutputFile> m_file;
    std::optional<StatsWriter> m_writer;
    bool m_isWritten = false;
    // Of a part.
    std::string m_firstSum;
    ComRef<PictureSample> m_last;
};

} // namespace scenedetect
