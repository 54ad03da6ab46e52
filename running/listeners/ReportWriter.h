// Makes the report of a run once its scenes are known.
#pragma once

#include "engine/DetectionParameters.h"
#include "products/report/Timeline.h"
#include "running/listeners/SceneTabler.h"
#include "running/run/RunListener.h"

#include <memory>
#include <optional>
#include <string>

namespace scenedetect {

/// Keeps the course of a run's figures.
class TimelineKeeper final : public RunListener {
  public:
    explicit TimelineKeeper(std::shared_ptr<Timeline> timeline) : m_timeline(std::move(timeline)) {}

    void Begin(const RunInfo& info) override { m_scale = info.scale; }
    void Figures(const FilePlace& place, const KxFrameFigures& figures,
                 const KxFrameDistances& /*distances*/) override {
        m_timeline->Add(EditFrame(place, m_scale), figures.nFilled, figures.nLevel,
                        (figures.dwFlags & KxFrameDark) != 0);
    }

  private:
    const std::shared_ptr<Timeline> m_timeline;
    TimeScale m_scale;
};

struct ReportSettings {
    DetectionParameters parameters;                            ///< that the run is judged by
    std::vector<std::pair<std::string, std::string>> settings; ///< of the run, for people
    bool hasPictures = true;                                   ///< the input is a file that can be read again
};

/// Pictures that cannot be decoded are left out.
[[nodiscard]] TableUse::Make MakeReport(ReportSettings settings, std::shared_ptr<const Timeline> timeline);

} // namespace scenedetect
