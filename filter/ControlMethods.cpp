// The control interfaces: each method forwards to the run in a line or two.
#include "filter/SceneDetectFilter.h"

#include "platform/ComGuard.h"
#include "support/DebugLog.h"

#include <mutex>

namespace scenedetect {

namespace {

using Lock = std::lock_guard<CriticalSection>;

constexpr ULONG kNoPosition = 0xFFFFFFFF;

} // namespace

STDMETHODIMP SceneDetectFilter::EnableDetection(BOOL bEnable) {
    return Guarded([&] {
        m_run.EnableDetection(bEnable != FALSE);
        return S_OK;
    });
}

STDMETHODIMP SceneDetectFilter::GetNextScene(BITMAPINFOHEADER** ppHeader, BYTE** ppBits, ULONG* pdwPos) {
    return Guarded([&] {
        const Lock lock(m_run.SceneLock());
        if (m_run.IsSceneCheckedOut())
            (void)ReleaseScene();
        const RealtimeScene* scene = m_run.CheckOutScene();
        // Deliberate: none is a success code; the position tells.
        if (!scene) {
            *pdwPos = kNoPosition;
            return VFW_S_NO_MORE_ITEMS;
        }
        if (ppHeader)
            *ppHeader = scene->m_dib.GetInfo();
        if (ppBits)
            *ppBits = scene->m_dib.GetBits();
        if (pdwPos)
            *pdwPos = scene->m_nPos;
        return S_OK;
    });
}

STDMETHODIMP SceneDetectFilter::ReleaseScene() {
    return m_run.ReleaseScene() ? S_OK : VFW_S_NO_MORE_ITEMS;
}

STDMETHODIMP SceneDetectFilter::GetStartTimecode(ULONG* pdwFrames) {
    if (!pdwFrames)
        return E_FAIL;
    *pdwFrames = static_cast<ULONG>(m_watch.FirstTimecode());
    return S_OK;
}

STDMETHODIMP SceneDetectFilter::SetDetectionMethod(ULONG dwMethod) {
    const Lock lock(m_run.SceneLock());
    m_run.m_nMethod = static_cast<std::uint32_t>(dwMethod);
    return S_OK;
}

STDMETHODIMP SceneDetectFilter::GetDetectionMethod(ULONG* pdwMethod) {
    const Lock lock(m_run.SceneLock());
    if (!pdwMethod)
        return E_FAIL;
    *pdwMethod = m_run.m_nMethod;
    return S_OK;
}

STDMETHODIMP SceneDetectFilter::SetSceneInterval(ULONG dwFrames) {
    const Lock lock(m_run.SceneLock());
    m_run.m_nInterval = static_cast<std::int32_t>(dwFrames);
    return S_OK;
}

STDMETHODIMP SceneDetectFilter::MarkScene() {
    m_run.MarkScene();
    return S_OK;
}

STDMETHODIMP SceneDetectFilter::GetFrameCount(ULONG* pdwFrames) {
    *pdwFrames = static_cast<ULONG>(m_run.FrameCount());
    return S_OK;
}

STDMETHODIMP SceneDetectFilter::GetCurrentTimecode(ULONG* pdwFrames) {
    *pdwFrames = static_cast<ULONG>(m_watch.TimecodeOffset());
    return S_OK;
}

STDMETHODIMP SceneDetectFilter::EnableTimecode(BOOL bEnable) {
    m_run.m_bReadTimecode = bEnable;
    return S_OK;
}

STDMETHODIMP SceneDetectFilter::IsTimecodeEnabled() {
    return m_run.m_bReadTimecode ? S_OK : S_FALSE;
}

STDMETHODIMP SceneDetectFilter::EnableSceneListFile(LPCWSTR pszPath) {
    return Guarded([&] {
        const std::wstring path = pszPath ? pszPath : L"";
        m_run.SetSceneListFile(path);
        if (!path.empty())
            DebugPrintAt(kLogCategorySceneDetect, kLogLevelResult,
                         L"SceneDetectFilter:EnableSceneListFile: %s", path.c_str());
        return S_OK;
    });
}

STDMETHODIMP SceneDetectFilter::DisableSceneListFile() {
    m_run.SetSceneListFile({});
    return S_OK;
}

STDMETHODIMP SceneDetectFilter::SetFrameOffset(LONG nFrames) {
    const Lock lock(m_run.SceneLock());
    m_run.m_nFrameOffset = nFrames;
    return S_OK;
}

STDMETHODIMP SceneDetectFilter::SetTimeOffset(LONGLONG rtOffset) {
    const Lock lock(m_run.SceneLock());
    m_run.m_rtTimeOffset = rtOffset;
    return S_OK;
}

STDMETHODIMP SceneDetectFilter::GetSceneCount(ULONG* pdwCount) {
    *pdwCount = static_cast<ULONG>(m_run.SceneCount());
    return S_OK;
}

STDMETHODIMP SceneDetectFilter::EnableSceneBitmaps(BOOL bEnable) {
    const Lock lock(m_run.SceneLock());
    m_run.m_bKeepScenePictures = bEnable != FALSE;
    return S_OK;
}

} // namespace scenedetect
