// Writes pictures of each scene when the run is over.
#pragma once

#include "products/files/NamePattern.h"
#include "products/files/OutputClaims.h"
#include "products/stills/PictureSettings.h"
#include "reading/base/Console.h"
#include "running/run/RunListener.h"
#include "running/run/RunProgress.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace scenedetect {

/// Reads the file again, so it must be one. What can't be decoded costs its picture only, with a warning.
class PictureTaker final : public RunListener {
  public:
    /// All must outlive the object.
    PictureTaker(const PictureSettings& settings, OutputClaims& claims, Console& console,
                 RunProgress& progress)
        : m_settings(settings), m_claims(claims), m_console(console), m_progress(progress) {}

    void Begin(const RunInfo& info) override { m_info = info; }
    void Scene(const FoundScene& scene) override;
    void Gap(std::int64_t sample, const FilePlace& /*place*/) override {
        if (!m_scenes.empty())
            m_scenes.back().end = sample;
    }
    void Passed(PictureSample& sample, std::int64_t index) override;
    void End(const RunEnd& end) override;
    void ListOutputs(RunOutputs& outputs) const override {
        outputs.AddSeries("picture", m_settings.folder, m_written, m_isDone);
    }

  private:
    [[nodiscard]] std::string NameOf(const NameFields& fields, const PictureAt& at) const;
    void Write(const AVFrame& frame, int quarters, const std::string& path);

    struct Begun {
        std::int64_t sample;
        NameFields names;
        std::optional<std::int64_t> end{}; // sample; none: the next scene's first
    };

    const PictureSettings& m_settings;
    OutputClaims& m_claims;
    Console& m_console;
    RunProgress& m_progress;
    RunInfo m_info;
    SampleTable m_places; // all of them
    std::vector<Begun> m_scenes;
    std::int64_t m_written = 0;
    bool m_isDone = false;
};

} // namespace scenedetect
