#include "scenes/DetectionRun.h"

#include "scenes/SceneListFile.h"
#include "support/DebugLog.h"

#include <mutex>
#include <utility>

namespace scenedetect {

using Lock = std::lock_guard<CriticalSection>;

void DetectionRun::EnableDetection(bool enable) {
    const Lock lock(m_csScenes);
    ClearSceneList();
    m_nFrameOffset = 0;
    m_rtTimeOffset = 0;
    if (enable) {
        m_bAddScenePending = false;
        m_runParameters = m_parameters;
        m_runMeasuresDistances = m_measuresDistances;
        m_figures.Begin();
        m_nFrameCount.Start();
    } else {
        // Deliberate: the count stays, so that the length of the finished run can still be asked for. The
        // file lists all scenes of the run, also those that were taken from the queue, and its name is used
        // once.
        m_nFrameCount.Stop();
        m_figures.End();
        if (!m_strSceneListFile.empty())
            WriteSceneListFile(std::exchange(m_strSceneListFile, {}), m_vecScenePositions, m_nMethod);
    }
    m_vecScenePositions.clear();
}

void DetectionRun::MarkScene() {
    const Lock lock(m_csScenes);
    m_bAddScenePending = true;
}

void DetectionRun::SetSceneListFile(std::wstring path) {
    const Lock lock(m_csScenes);
    m_strSceneListFile = std::move(path);
}

DetectionParameters DetectionRun::Parameters() {
    const Lock lock(m_csScenes);
    return m_parameters;
}

void DetectionRun::SetParameters(const DetectionParameters& parameters) {
    const Lock lock(m_csScenes);
    m_parameters = parameters;
}

DetectionParameters DetectionRun::RunParameters() {
    const Lock lock(m_csScenes);
    return m_runParameters;
}

bool DetectionRun::RunMeasuresDistances() {
    const Lock lock(m_csScenes);
    return m_runMeasuresDistances;
}

void DetectionRun::EnableDistances(bool enable) {
    const Lock lock(m_csScenes);
    if (enable)
        m_figures.OpenDistances();
    else
        m_figures.CloseDistances();
    m_measuresDistances = enable;
}

void DetectionRun::EnableFigures(bool enable) {
    const Lock lock(m_csScenes);
    if (enable)
        m_figures.Open();
    else
        m_figures.Close();
    m_bKeepFigures = enable;
}

std::size_t DetectionRun::TakeFigures(std::span<KxFrameFigures> target, KxFrameDistances* distances) {
    const Lock lock(m_csScenes);
    return m_figures.Take(target, distances);
}

void DetectionRun::NoteFigures(const RunFrame& frame, const Judgement& judgement,
                               const Distances* distances) {
    if (!m_bKeepFigures)
        return;
    const Lock lock(m_csScenes);
    // Asked again: meanwhile the run may be over, or the figures no longer wanted.
    if (m_bKeepFigures && m_nFrameCount.IsCurrent(frame))
        m_figures.Add(frame.number, judgement, distances);
}

bool DetectionRun::IsSceneCheckedOut() {
    const Lock lock(m_csScenes);
    return m_bSceneCheckedOut;
}

const RealtimeScene* DetectionRun::CheckOutScene() {
    const Lock lock(m_csScenes);
    if (m_sceneList.empty())
        return nullptr;
    m_bSceneCheckedOut = true;
    return &m_sceneList.front();
}

bool DetectionRun::ReleaseScene() {
    const Lock lock(m_csScenes);
    m_bSceneCheckedOut = false;
    if (m_sceneList.empty())
        return false;
    m_sceneList.pop_front();
    return true;
}

std::size_t DetectionRun::SceneCount() {
    const Lock lock(m_csScenes);
    return m_sceneList.size();
}

void DetectionRun::ClearSceneList() {
    const Lock lock(m_csScenes);
    m_sceneList.clear();
    m_bSceneCheckedOut = false;
}

LONGLONG DetectionRun::RelativeStart(const RunFrame& frame, LONGLONG start) {
    if (std::exchange(m_timedRun, frame.run) != frame.run)
        m_rtFirstStart = kNoFirstStart;
    if (m_rtFirstStart == kNoFirstStart)
        m_rtFirstStart = start;
    // Through unsigned: times of a broken source may lie further apart than 64 bits hold.
    return static_cast<LONGLONG>(static_cast<ULONGLONG>(start) - static_cast<ULONGLONG>(m_rtFirstStart));
}

void DetectionRun::MarkFrame(const RunFrame& frame) {
    const Lock lock(m_csScenes);
    if (m_nFrameCount.IsCurrent(frame))
        m_bAddScenePending = true;
}

void DetectionRun::AddScene(const RunFrame& frame, const Dib& picture, SceneMoment moment) {
    {
        // A mark is consumed before the scene is made: one set meanwhile is for the next frame.
        const Lock lock(m_csScenes);
        if (!m_nFrameCount.IsCurrent(frame))
            return;
        m_bAddScenePending = false;
    }
    moment.frameNumber = frame.number;
    moment.frameOffset = m_nFrameOffset;
    moment.timeOffset = m_rtTimeOffset;
    const std::int32_t position = ScenePosition(m_nMethod, moment);

    // Made as a list of one before the lock is taken: adding it under the lock can't fail and takes little
    // time.
    std::list<RealtimeScene> scene(1);
    scene.front().m_nPos = static_cast<std::uint32_t>(position);
    if (m_bKeepScenePictures)
        (void)picture.CopyTo(scene.front().m_dib);
    DebugPrintAt(kLogCategorySceneDetect, kLogLevelScene, L"SceneDetectFilter::AddScene, pos = %d\n",
                 position);

    const Lock lock(m_csScenes);
    if (!m_nFrameCount.IsCurrent(frame))
        return;
    m_vecScenePositions.push_back(position);
    m_sceneList.splice(m_sceneList.end(), scene);
}

} // namespace scenedetect
