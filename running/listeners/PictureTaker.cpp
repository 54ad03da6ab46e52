#include "running/listeners/PictureTaker.h"

#include "products/files/OutputFile.h"
#include "products/stills/FrameFetcher.h"
#include "running/listeners/SceneNames.h"

#include <algorithm>

namespace scenedetect {

void PictureTaker::Scene(const FoundScene& scene) {
    const NameFields names = NamesOf(scene, m_info);
    // Better now than when the whole file is read; but for names with frames that are not known yet.
    NameFields later = names;
    ++later.frame;
    for (const PictureAt& at : m_settings.at)
        if (const std::string name = NameOf(names, at);
            at.kind == PictureAt::Kind::Start || name == NameOf(later, at))
            (void)FindOutputTarget(PathIn(m_settings.folder, name), m_settings.existing);
    m_scenes.push_back({scene.sample, names});
}

void PictureTaker::Passed(PictureSample& sample, std::int64_t /*index*/) {
    m_places.Append(sample.picture.place);
}

std::string PictureTaker::NameOf(const NameFields& fields, const PictureAt& at) const {
    const std::string word = m_settings.at.size() > 1 ? '-' + at.word : "";
    return m_settings.names.Expand(fields, word + SuffixOf(m_settings.format));
}

void PictureTaker::End(const RunEnd& end) {
    const auto fetcher = FrameFetcher::Open(m_info.input, m_info.media.isRawDv);
    m_progress.wanted = std::ssize(m_scenes) * std::ssize(m_settings.at);
    m_progress.made = 0;
    m_progress.products = "pictures";
    for (std::size_t i = 0; i < m_scenes.size(); ++i) {
        const std::int64_t next =
            m_scenes[i].end.value_or(i + 1 < m_scenes.size() ? m_scenes[i + 1].sample : end.samples);
        for (const PictureAt& at : m_settings.at) {
            // Two scenes at one place have the same picture.
            const std::int64_t last = std::max(next, m_scenes[i].sample + 1);
            const FilePlace place = m_places.Find(at.Of(m_scenes[i].sample, last)).value();
            m_scenes[i].names.frame = place.frame;
            if (const AVFrame* frame = fetcher->Fetch(place))
                Write(*frame, fetcher->QuarterTurns(),
                      m_claims.ClaimIn(m_settings.folder, NameOf(m_scenes[i].names, at)));
            else
                m_console.Message(m_info.input + ": no picture of frame " + std::to_string(place.frame) +
                                  ": it cannot be decoded");
            ++m_progress.made;
        }
    }
    m_isDone = true;
}

void PictureTaker::Write(const AVFrame& frame, int quarters, const std::string& path) {
    OutputFile file(path, m_settings.existing);
    file.Write(EncodeStill(frame, {m_settings.width, quarters}, m_settings.format));
    file.Commit();
    ++m_written;
}

} // namespace scenedetect
