// Cuts an input into a clip a scene: DV frames while they pass, everything else when the scenes are known.
#pragma once

#include "products/clips/ClipCutter.h"
#include "products/cutting/CutPackets.h"
#include "reading/base/Console.h"
#include "running/run/RunListener.h"
#include "running/run/RunProgress.h"

#include <optional>

namespace scenedetect {

class ClipMaker final : public RunListener {
  public:
    /// All references must outlive the object. `dropsShort`: scenes may be too short for a clip, which is
    /// told when their frames have passed.
    ClipMaker(ClipSettings settings, OutputClaims& claims, Console& console, RunProgress& progress,
              bool dropsShort = false)
        : m_settings(std::move(settings)),
          m_claims(claims),
          m_console(console),
          m_progress(progress),
          m_dropsShort(dropsShort) {}

    void Begin(const RunInfo& info) override;
    void Scene(const FoundScene& scene) override;
    void Gap(std::int64_t sample, const FilePlace& place) override;
    void Passed(PictureSample& sample, std::int64_t index) override;
    void End(const RunEnd& end) override;
    void ListOutputs(RunOutputs& outputs) const override;

  private:
    void Plan(const std::string& input);
    void CutFile(const RunEnd& end);
    void Tell(const WrittenClip& clip);

    const ClipSettings m_settings;
    OutputClaims& m_claims;
    Console& m_console;
    RunProgress& m_progress;
    const bool m_dropsShort;
    RunInfo m_info;
    std::optional<ClipCutter> m_cutter; // of DV frames; else:
    PacketCut m_cut;
    std::string m_suffix; // of its clips
    std::int64_t m_written = 0;
    std::int64_t m_mostEarly = 0; // frames that a clip hides
    std::int64_t m_mostLate = 0;
    bool m_isDone = false;
};

} // namespace scenedetect
