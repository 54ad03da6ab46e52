// A detection run: its settings, its counters, the queue of scenes and the positions for the scene-list file.
#pragma once

#include "engine/decision/DetectionParameters.h"
#include "platform/CriticalSection.h"
#include "scenes/FrameCounter.h"
#include "scenes/FrameFigures.h"
#include "scenes/IKxSceneDetect.h"
#include "scenes/RealtimeScene.h"
#include "scenes/ScenePosition.h"

#include <atomic>
#include <cstdint>
#include <list>
#include <optional>
#include <span>
#include <string>
#include <vector>

namespace scenedetect {

/// What the control interfaces steer and the streaming thread feeds, free of COM.
///
/// Host threads call the settings and the queue operations; the streaming thread calls those under
/// "streaming thread". Settings are single words that take effect at the next sample. `m_csScenes` guards the
/// two scene collections, the figures, the parameters, the file name and the switch. Detection can be
/// switched off and on while a sample is in flight: the scenes and figures that it still reports belong to a
/// run that is over, and are dropped; it is counted unless another run has begun.
class DetectionRun {
  public:
    /// `m_rtFirstStart` before the run's first sample.
    static constexpr LONGLONG kNoFirstStart = -999999;

    /// Guards the scenes; recursive. A caller that combines operations below holds it around them.
    CriticalSection& SceneLock() { return m_csScenes; }

    // --- settings ---
    std::atomic<std::uint32_t> m_nMethod = KxMethodManual;
    std::atomic<std::int32_t> m_nInterval = 0;
    std::atomic<BOOL> m_bReadTimecode = FALSE;
    std::atomic<BOOL> m_bKeepScenePictures = TRUE;
    std::atomic<std::int32_t> m_nFrameOffset = 0;
    std::atomic<LONGLONG> m_rtTimeOffset = 0;

    /// Begins a run (scenes dropped, counters restarted) or ends it (scenes dropped, file written if named).
    void EnableDetection(bool enable);
    void MarkScene();
    void SetSceneListFile(std::wstring path);
    [[nodiscard]] std::int32_t FrameCount() const { return m_nFrameCount.Count(); }

    // --- the picture comparison ---
    [[nodiscard]] DetectionParameters Parameters();
    /// For runs that begin from now on.
    void SetParameters(const DetectionParameters& parameters);
    /// Figures are kept from now on, or dropped and no longer kept. Throws std::bad_alloc, changing nothing.
    void EnableFigures(bool enable);
    /// Runs that begin from now on measure distances, or measure none and those kept are dropped. Throws
    /// std::bad_alloc, changing nothing.
    void EnableDistances(bool enable);
    /// Hands out the oldest figures, and their distances unless that is null; how many.
    [[nodiscard]] std::size_t TakeFigures(std::span<KxFrameFigures> target,
                                          KxFrameDistances* distances = nullptr);

    // --- the queue ---
    [[nodiscard]] bool IsSceneCheckedOut();
    /// Checks out the oldest scene, which stays in the queue; null when there is none. Belongs to the run.
    [[nodiscard]] const RealtimeScene* CheckOutScene();
    /// Destroys the oldest scene; false when there is none. Nothing is checked out afterwards.
    bool ReleaseScene();
    [[nodiscard]] std::size_t SceneCount();
    void ClearSceneList();

    // --- streaming thread ---
    /// The frame that the next sample is; nothing while detection is off.
    [[nodiscard]] std::optional<RunFrame> BeginFrame() const { return m_nFrameCount.Current(); }
    /// The parameters that the run under way is judged by.
    [[nodiscard]] DetectionParameters RunParameters();
    [[nodiscard]] bool RunMeasuresDistances();
    /// Keeps what the picture comparison made of a frame, if that is wanted; `distances` may be null.
    void NoteFigures(const RunFrame& frame, const Judgement& judgement, const Distances* distances = nullptr);
    /// Makes a sample's start relative to the run's first sample.
    [[nodiscard]] LONGLONG RelativeStart(const RunFrame& frame, LONGLONG start);
    /// Asks for a scene at this frame, as MarkScene does, but for this run only.
    void MarkFrame(const RunFrame& frame);
    [[nodiscard]] bool IsScenePending() const { return m_bAddScenePending; }
    /// Records a scene. `moment` holds the sample's times; frame number and offsets are filled in here. Keeps
    /// a deep copy of `picture` when pictures are kept; out of memory leaves the scene without one.
    void AddScene(const RunFrame& frame, const Dib& picture, SceneMoment moment);
    void EndFrame(const RunFrame& frame) { m_nFrameCount.Advance(frame); }

  private:
    CriticalSection m_csScenes;
    std::wstring m_strSceneListFile;
    std::list<RealtimeScene> m_sceneList;
    bool m_bSceneCheckedOut = false;
    std::vector<std::int32_t> m_vecScenePositions;

    DetectionParameters m_parameters;    // of the next run
    DetectionParameters m_runParameters; // of this one
    bool m_measuresDistances = false;    // the next run
    bool m_runMeasuresDistances = false; // this one
    FiguresQueue m_figures;
    std::atomic<bool> m_bKeepFigures = false; // spares the streaming thread the lock

    FrameCounter m_nFrameCount; // says whether detection is on, too
    std::atomic<bool> m_bAddScenePending = false;

    // Streaming thread only: the first start, and the run that it was taken in.
    LONGLONG m_rtFirstStart = kNoFirstStart;
    std::uint32_t m_timedRun = 0;
};

} // namespace scenedetect
