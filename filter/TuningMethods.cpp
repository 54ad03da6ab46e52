// The parameters of the picture comparison, and its figures, for hosts.
#include "filter/SceneDetectFilter.h"

#include "platform/ComGuard.h"

#include <mutex>

namespace scenedetect {

namespace {

using Lock = std::lock_guard<CriticalSection>;

static_assert(KxAreaHeight + 1 == kDetectionParameters.size());

const ParameterRange* FindParameter(ULONG number) {
    return number < kDetectionParameters.size() ? &kDetectionParameters[number] : nullptr;
}

} // namespace

STDMETHODIMP SceneDetectFilter::SetParameter(ULONG dwParameter, LONG nValue) {
    const ParameterRange* range = FindParameter(dwParameter);
    if (!range || !range->Allows(nValue))
        return E_INVALIDARG;
    const Lock lock(m_run.SceneLock());
    DetectionParameters parameters = m_run.Parameters();
    parameters.*range->value = nValue;
    m_run.SetParameters(parameters);
    return S_OK;
}

STDMETHODIMP SceneDetectFilter::GetParameter(ULONG dwParameter, LONG* pnValue) {
    if (!pnValue)
        return E_POINTER;
    const ParameterRange* range = FindParameter(dwParameter);
    if (!range)
        return E_INVALIDARG;
    *pnValue = range->Of(m_run.Parameters());
    return S_OK;
}

STDMETHODIMP SceneDetectFilter::GetParameterRange(ULONG dwParameter, LONG* pnLeast, LONG* pnMost,
                                                  LONG* pnDefault) {
    const ParameterRange* range = FindParameter(dwParameter);
    if (!range)
        return E_INVALIDARG;
    if (pnLeast)
        *pnLeast = range->least;
    if (pnMost)
        *pnMost = range->most;
    if (pnDefault)
        *pnDefault = range->Of({});
    return S_OK;
}

STDMETHODIMP SceneDetectFilter::ResetParameters() {
    m_run.SetParameters({});
    return S_OK;
}

STDMETHODIMP SceneDetectFilter::EnableFrameFigures(BOOL bEnable) {
    return Guarded([&] {
        m_run.EnableFigures(bEnable != FALSE);
        return S_OK;
    });
}

STDMETHODIMP SceneDetectFilter::GetFrameFigures(ULONG dwCount, KxFrameFigures* pFigures, ULONG* pdwTaken) {
    if (!pFigures || !pdwTaken)
        return E_POINTER;
    *pdwTaken = static_cast<ULONG>(m_run.TakeFigures({pFigures, dwCount}));
    return *pdwTaken != 0 ? S_OK : VFW_S_NO_MORE_ITEMS;
}

STDMETHODIMP SceneDetectFilter::EnableFrameDistances(BOOL bEnable) {
    return Guarded([&] {
        m_run.EnableDistances(bEnable != FALSE);
        return S_OK;
    });
}

STDMETHODIMP SceneDetectFilter::GetFrameDistances(ULONG dwCount, KxFrameFigures* pFigures,
                                                  KxFrameDistances* pDistances, ULONG* pdwTaken) {
    if (!pFigures || !pDistances || !pdwTaken)
        return E_POINTER;
    *pdwTaken = static_cast<ULONG>(m_run.TakeFigures({pFigures, dwCount}, pDistances));
    return *pdwTaken != 0 ? S_OK : VFW_S_NO_MORE_ITEMS;
}

} // namespace scenedetect
