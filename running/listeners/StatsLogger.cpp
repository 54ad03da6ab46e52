#include "running/listeners/StatsLogger.h"

#include "reading/base/FilePath.h"

namespace scenedetect {

void StatsLogger::Begin(const RunInfo& info) {
    m_file.emplace(m_path, Existing::Replace);
    StatsSettings settings{info.scale, info.parameters, {{"input", info.input}}, false, m_hasDistances};
    if (m_part.IsChosen()) {
        const auto bytes = static_cast<std::int64_t>(std::filesystem::file_size(FilePath(info.input)));
        settings =
            PartSettings(info.scale, info.parameters, info.input, {m_part, bytes, info.reader, info.media});
    }
    m_writer.emplace(std::move(settings), [this](std::string_view text) { m_file->Write(text); });
}

void StatsLogger::Passed(PictureSample& sample, std::int64_t index) {
    if (!m_part.IsChosen())
        return;
    if (index == 0)
        m_firstSum = PictureSum(sample.picture);
    sample.AddRef();
    m_last.reset(&sample);
}

void StatsLogger::NoteEnds(const RunEnd& end) {
    if (m_last) {
        m_writer->AddNote({std::string(kFirstPictureNote), m_firstSum});
        m_writer->AddNote({std::string(kLastPictureNote), PictureSum(m_last->picture)});
    }
    if (end.ending == RunEnding::BrokeOff)
        m_writer->AddNote({std::string(kBrokenOffNote), "1"});
}

void StatsLogger::End(const RunEnd& end) {
    if (m_part.IsChosen() && end.ending == RunEnding::Stopped)
        return m_file.reset(); // must not be taken for the whole part
    if (m_part.IsChosen())
        NoteEnds(end);
    m_last.reset();
    m_writer->Finish();
    m_file->Commit();
    m_isWritten = true;
}

} // namespace scenedetect
