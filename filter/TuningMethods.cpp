// The parameters of the picture comparison, and its figures, for hosts.
#include "filter/SceneDetectFilter.h"

#include "platform/ComGuard.h"

#include <mutex>

namespace scenedetect {

namespace {

using Lock = std::lock_guard<CriticalSection>;

static_assert(KxLongestScene + 1 == kDetectionParameters.size());

const ParameterFacts* FindParameter(ULONG number) {
    return number < kDetectionParameters.size() ? &kDetectionParameters[number] : nullptr;
}

} // namespace

STDMETHODIMP SceneDetectFilter::SetParameter(ULONG dwParameter, LONG nValue) {
    const ParameterFacts* facts = FindParameter(dwParameter);
    if (!facts || !facts->Allows(nValue))
        return E_INVALIDARG;
    const Lock lock(m_run.SceneLock());
    DetectionParameters parameters = m_run.Parameters();
    parameters.*facts->value = nValue;
    m_run.SetParameters(parameters);
    return S_OK;
}

STDMETHODIMP SceneDetectFilter::GetParameter(ULONG dwParameter, LONG* pnValue) {
    if (!pnValue)
        return E_POINTER;
    const ParameterFacts* facts = FindParameter(dwParameter);
    if (!facts)
        return E_INVALIDARG;
    *pnValue = facts->Of(m_run.Parameters());
    return S_OK;
}

STDMETHODIMP SceneDetectFilter::GetParameterRange(ULONG dwParameter, LONG* pnLeast, LONG* pnMost,
                                                  LONG* pnDefault) {
    const ParameterFacts* facts = FindParameter(dwParameter);
    if (!facts)
        return E_INVALIDARG;
    if (pnLeast)
        *pnLeast = facts->least;
    if (pnMost)
        *pnMost = facts->most;
    if (pnDefault)
        *pnDefault = facts->Of({});
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

} // namespace scenedetect
