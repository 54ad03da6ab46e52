#include "running/listeners/TapeLogger.h"

#include "reading/base/HostError.h"

namespace scenedetect {

void TapeLogger::Begin(const RunInfo& info) {
    if (info.format.fourcc != kDvFourcc)
        throw HostError(info.input + ": --tape-log needs DV video of 25 Mbit/s");
    m_file.emplace(m_path, Existing::Replace);
    m_log.emplace(TapeLogFormatOf(m_path).value(), info.input,
                  [this](std::string_view text) { m_file->Write(text); });
}

void TapeLogger::Passed(PictureSample& sample, std::int64_t /*index*/) {
    if (const auto frame = ReadTapeFrame(sample.picture))
        m_log->Note(*frame);
}

void TapeLogger::End(const RunEnd& /*end*/) {
    m_log->Finish();
    m_file->Commit();
    m_isWritten = true;
}

} // namespace scenedetect
