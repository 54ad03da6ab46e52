// Writes the tape log of an input while it is read.
#pragma once

#include "products/files/OutputFile.h"
#include "products/tape/TapeLog.h"
#include "running/run/RunListener.h"

#include <optional>
#include <string>

namespace scenedetect {

class TapeLogger final : public RunListener {
  public:
    /// `path` ends with the suffix of a format of the log, or is "-".
    explicit TapeLogger(std::string path) : m_path(std::move(path)) {}

    void Begin(const RunInfo& info) override;
    void Irregular(const Irregularity& irregularity) override { m_log->Note(irregularity); }
    void Passed(PictureSample& sample, std::int64_t index) override;
    void End(const RunEnd& end) override;
    void ListOutputs(RunOutputs& outputs) const override { outputs.Add(NameOfOutput(m_path), m_isWritten); }

  private:
    const std::string m_path;
    std::optional<OutputFile> m_file;
    std::optional<TapeLog> m_log;
    bool m_isWritten = false;
};

} // namespace scenedetect
