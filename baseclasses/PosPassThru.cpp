#include "baseclasses/PosPassThru.h"

#include "baseclasses/ComRef.h"

namespace {

/// Calls `method` of what `pPin` is connected to.
template <class Interface, class... Parameters>
HRESULT Upstream(IPin* pPin, REFIID riid, HRESULT (STDMETHODCALLTYPE Interface::*method)(Parameters...),
                 std::type_identity_t<Parameters>... arguments) {
    IPin* pPeer = nullptr;
    if (FAILED(pPin->ConnectedTo(&pPeer)))
        return E_NOTIMPL;
    const ComRef<IPin> peer(pPeer);
    const auto target = QueryFor<Interface>(pPeer, riid);
    return target ? (target.get()->*method)(arguments...) : E_NOTIMPL;
}

} // namespace

CPosPassThru::CPosPassThru(LPCTSTR pName, LPUNKNOWN pUnk, HRESULT*, IPin* pPin)
    : CUnknown(pName, pUnk), m_pPin(pPin) {}

STDMETHODIMP CPosPassThru::NonDelegatingQueryInterface(REFIID riid, void** ppv) {
    if (riid == IID_IMediaSeeking)
        return GetInterface(static_cast<IMediaSeeking*>(this), ppv);
    if (riid == IID_IMediaPosition)
        return GetInterface(static_cast<IMediaPosition*>(this), ppv);
    return CUnknown::NonDelegatingQueryInterface(riid, ppv);
}

STDMETHODIMP CPosPassThru::GetCapabilities(DWORD* pCapabilities) {
    return Upstream(m_pPin, IID_IMediaSeeking, &IMediaSeeking::GetCapabilities, pCapabilities);
}

STDMETHODIMP CPosPassThru::CheckCapabilities(DWORD* pCapabilities) {
    return Upstream(m_pPin, IID_IMediaSeeking, &IMediaSeeking::CheckCapabilities, pCapabilities);
}

STDMETHODIMP CPosPassThru::IsFormatSupported(const GUID* pFormat) {
    return Upstream(m_pPin, IID_IMediaSeeking, &IMediaSeeking::IsFormatSupported, pFormat);
}

STDMETHODIMP CPosPassThru::QueryPreferredFormat(GUID* pFormat) {
    return Upstream(m_pPin, IID_IMediaSeeking, &IMediaSeeking::QueryPreferredFormat, pFormat);
}

STDMETHODIMP CPosPassThru::GetTimeFormat(GUID* pFormat) {
    return Upstream(m_pPin, IID_IMediaSeeking, &IMediaSeeking::GetTimeFormat, pFormat);
}

STDMETHODIMP CPosPassThru::IsUsingTimeFormat(const GUID* pFormat) {
    return Upstream(m_pPin, IID_IMediaSeeking, &IMediaSeeking::IsUsingTimeFormat, pFormat);
}

STDMETHODIMP CPosPassThru::SetTimeFormat(const GUID* pFormat) {
    return Upstream(m_pPin, IID_IMediaSeeking, &IMediaSeeking::SetTimeFormat, pFormat);
}

STDMETHODIMP CPosPassThru::GetDuration(LONGLONG* pDuration) {
    return Upstream(m_pPin, IID_IMediaSeeking, &IMediaSeeking::GetDuration, pDuration);
}

STDMETHODIMP CPosPassThru::GetStopPosition(LONGLONG* pStop) {
    return Upstream(m_pPin, IID_IMediaSeeking, &IMediaSeeking::GetStopPosition, pStop);
}

STDMETHODIMP CPosPassThru::GetCurrentPosition(LONGLONG* pCurrent) {
    return Upstream(m_pPin, IID_IMediaSeeking, &IMediaSeeking::GetCurrentPosition, pCurrent);
}

STDMETHODIMP CPosPassThru::ConvertTimeFormat(LONGLONG* pTarget, const GUID* pTargetFormat, LONGLONG Source,
                                             const GUID* pSourceFormat) {
    return Upstream(m_pPin, IID_IMediaSeeking, &IMediaSeeking::ConvertTimeFormat, pTarget, pTargetFormat,
                    Source, pSourceFormat);
}

STDMETHODIMP CPosPassThru::SetPositions(LONGLONG* pCurrent, DWORD CurrentFlags, LONGLONG* pStop,
                                        DWORD StopFlags) {
    return Upstream(m_pPin, IID_IMediaSeeking, &IMediaSeeking::SetPositions, pCurrent, CurrentFlags, pStop,
                    StopFlags);
}

STDMETHODIMP CPosPassThru::GetPositions(LONGLONG* pCurrent, LONGLONG* pStop) {
    return Upstream(m_pPin, IID_IMediaSeeking, &IMediaSeeking::GetPositions, pCurrent, pStop);
}

STDMETHODIMP CPosPassThru::GetAvailable(LONGLONG* pEarliest, LONGLONG* pLatest) {
    return Upstream(m_pPin, IID_IMediaSeeking, &IMediaSeeking::GetAvailable, pEarliest, pLatest);
}

STDMETHODIMP CPosPassThru::SetRate(double dRate) {
    return Upstream(m_pPin, IID_IMediaSeeking, &IMediaSeeking::SetRate, dRate);
}

STDMETHODIMP CPosPassThru::GetRate(double* pdRate) {
    return Upstream(m_pPin, IID_IMediaSeeking, &IMediaSeeking::GetRate, pdRate);
}

STDMETHODIMP CPosPassThru::GetPreroll(LONGLONG* pPreroll) {
    return Upstream(m_pPin, IID_IMediaSeeking, &IMediaSeeking::GetPreroll, pPreroll);
}

STDMETHODIMP CPosPassThru::GetTypeInfoCount(UINT*) {
    return E_NOTIMPL;
}

STDMETHODIMP CPosPassThru::GetTypeInfo(UINT, LCID, ITypeInfo**) {
    return E_NOTIMPL;
}

STDMETHODIMP CPosPassThru::GetIDsOfNames(REFIID, LPOLESTR*, UINT, LCID, DISPID*) {
    return E_NOTIMPL;
}

STDMETHODIMP CPosPassThru::Invoke(DISPID, REFIID, LCID, WORD, DISPPARAMS*, VARIANT*, EXCEPINFO*, UINT*) {
    return E_NOTIMPL;
}

STDMETHODIMP CPosPassThru::get_Duration(REFTIME* plength) {
    return Upstream(m_pPin, IID_IMediaPosition, &IMediaPosition::get_Duration, plength);
}

STDMETHODIMP CPosPassThru::put_CurrentPosition(REFTIME llTime) {
    return Upstream(m_pPin, IID_IMediaPosition, &IMediaPosition::put_CurrentPosition, llTime);
}

STDMETHODIMP CPosPassThru::get_CurrentPosition(REFTIME* pllTime) {
    return Upstream(m_pPin, IID_IMediaPosition, &IMediaPosition::get_CurrentPosition, pllTime);
}

STDMETHODIMP CPosPassThru::get_StopTime(REFTIME* pllTime) {
    return Upstream(m_pPin, IID_IMediaPosition, &IMediaPosition::get_StopTime, pllTime);
}

STDMETHODIMP CPosPassThru::put_StopTime(REFTIME llTime) {
    return Upstream(m_pPin, IID_IMediaPosition, &IMediaPosition::put_StopTime, llTime);
}

STDMETHODIMP CPosPassThru::get_PrerollTime(REFTIME* pllTime) {
    return Upstream(m_pPin, IID_IMediaPosition, &IMediaPosition::get_PrerollTime, pllTime);
}

STDMETHODIMP CPosPassThru::put_PrerollTime(REFTIME llTime) {
    return Upstream(m_pPin, IID_IMediaPosition, &IMediaPosition::put_PrerollTime, llTime);
}

STDMETHODIMP CPosPassThru::put_Rate(double dRate) {
    return Upstream(m_pPin, IID_IMediaPosition, &IMediaPosition::put_Rate, dRate);
}

STDMETHODIMP CPosPassThru::get_Rate(double* pdRate) {
    return Upstream(m_pPin, IID_IMediaPosition, &IMediaPosition::get_Rate, pdRate);
}

STDMETHODIMP CPosPassThru::CanSeekForward(LONG* pCanSeekForward) {
    return Upstream(m_pPin, IID_IMediaPosition, &IMediaPosition::CanSeekForward, pCanSeekForward);
}

STDMETHODIMP CPosPassThru::CanSeekBackward(LONG* pCanSeekBackward) {
    return Upstream(m_pPin, IID_IMediaPosition, &IMediaPosition::CanSeekBackward, pCanSeekBackward);
}
