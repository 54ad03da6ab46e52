// Makes the report of a run once its scenes are known.
#pragma once

#include "engine/decision/DetectionParameters.h"
#include "products/report/ReportFigures.h"
#include "running/listeners/SceneTabler.h"
#include "running/run/RunListener.h"
#include "running/run/SceneLength.h"
#include "scenes/transitions/TransitionChoice.h"

#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace scenedetect {

/// Keeps a run's figures.
class FiguresKeeper final : public RunListener {
  public:
    explicit FiguresKeeper(std::shared_ptr<ReportFigures> figures) : m_figures(std::move(figures)) {}

    void Begin(const RunInfo& info) override { m_figures->Begin(info.scale); }
    void Figures(const FilePlace& place, const KxFrameFigures& figures,
                 const KxFrameDistances& distances) override {
        m_figures->Add(place, figures, distances);
    }

  private:
    const std::shared_ptr<ReportFigures> m_figures;
};

struct ReportSettings {
    DetectionParameters parameters; ///< that the run is judged by
    TransitionChoice transitions;
    SceneLength length;
    std::vector<std::string> command;                          ///< options that the page does not change
    std::vector<std::pair<std::string, std::string>> settings; ///< of the run, for people
    bool hasPictures = true;                                   ///< the input is a file that can be read again
    std::string linkedFrom{}; ///< where the page will be if it links to the input; empty: it does not
};

/// Pictures that cannot be decoded are left out.
[[nodiscard]] TableUse::Make MakeReport(ReportSettings settings,
                                        std::shared_ptr<const ReportFigures> figures);

} // namespace scenedetect
