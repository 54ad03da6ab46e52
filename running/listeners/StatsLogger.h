// Writes the figures of a run while it goes.
#pragma once

#include "products/files/OutputFile.h"
#include "products/stats/StatsWriter.h"
#include "running/run/RunListener.h"

#include <optional>
#include <string>

namespace scenedetect {

class StatsLogger final : public RunListener {
  public:
    StatsLogger(std::string path, const DetectionParameters& parameters)
        : m_path(std::move(path)), m_parameters(parameters) {}

    void Begin(const RunInfo& info) override {
        m_file.emplace(m_path, Existing::Replace);
        m_writer.emplace(StatsSettings{info.scale, m_parameters, {{"input", info.input}}},
                         [this](std::string_view text) { m_file->Write(text); });
    }
    void Figures(const FilePlace& place, const KxFrameFigures& figures) override {
        m_writer->Add(place, figures);
    }
    void End(const RunEnd& /*end*/) override {
        m_writer->Finish();
        m_file->Commit();
        m_isWritten = true;
    }
    void ListOutputs(RunOutputs& outputs) const override { outputs.Add(NameOfOutput(m_path), m_isWritten); }

  private:
    const std::string m_path;
    const DetectionParameters m_parameters;
    std::optional<OutputFile> m_file;
    std::optional<StatsWriter> m_writer;
    bool m_isWritten = false;
};

} // namespace scenedetect
