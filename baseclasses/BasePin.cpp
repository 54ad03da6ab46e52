#include "baseclasses/BasePin.h"

#include "baseclasses/BaseFilter.h"
#include "baseclasses/ComRef.h"
#include "baseclasses/Enumerators.h"
#include "baseclasses/WideString.h"

namespace {

/// Whether a failed attempt only says that one type or the other does not suit.
bool SaysTypeRefused(HRESULT hr) {
    return SUCCEEDED(hr) || hr == E_FAIL || hr == E_INVALIDARG || hr == VFW_E_TYPE_NOT_ACCEPTED;
}

} // namespace

CBasePin::CBasePin(LPCTSTR pObjectName, CBaseFilter* pFilter, CCritSec* pLock, HRESULT*, LPCWSTR pName,
                   PIN_DIRECTION dir)
    : CUnknown(pObjectName, nullptr), m_dir(dir), m_pLock(pLock), m_pFilter(pFilter) {
    CopyToNameField(m_name, MAX_PIN_NAME, pName);
}

CBasePin::~CBasePin() {
    if (IPin* peer = m_Connected)
        peer->Release();
}

STDMETHODIMP CBasePin::NonDelegatingQueryInterface(REFIID riid, void** ppv) {
    if (riid == IID_IPin)
        return GetInterface(static_cast<IPin*>(this), ppv);
    if (riid == IID_IQualityControl)
        return GetInterface(static_cast<IQualityControl*>(this), ppv);
    return CUnknown::NonDelegatingQueryInterface(riid, ppv);
}

STDMETHODIMP_(ULONG) CBasePin::NonDelegatingAddRef() {
    return m_pFilter->AddRef();
}

STDMETHODIMP_(ULONG) CBasePin::NonDelegatingRelease() {
    return m_pFilter->Release();
}

STDMETHODIMP CBasePin::Connect(IPin* pReceivePin, const AM_MEDIA_TYPE* pmt) {
    if (!pReceivePin)
        return E_POINTER;
    CAutoLock lock(m_pLock);
    if (m_Connected)
        return VFW_E_ALREADY_CONNECTED;
    if (!m_pFilter->IsAtRest())
        return VFW_E_NOT_STOPPED;
    CMediaType requested;
    const HRESULT hr = pmt ? requested.Set(*pmt) : S_OK;
    return FAILED(hr) ? hr : AgreeMediaType(pReceivePin, pmt ? &requested : nullptr);
}

STDMETHODIMP CBasePin::ReceiveConnection(IPin* pConnector, const AM_MEDIA_TYPE* pmt) {
    if (!pConnector || !pmt)
        return E_POINTER;
    CAutoLock lock(m_pLock);
    if (m_Connected)
        return VFW_E_ALREADY_CONNECTED;
    if (!m_pFilter->IsAtRest())
        return VFW_E_NOT_STOPPED;
    CMediaType offered;
    HRESULT hr = offered.Set(*pmt);
    if (FAILED(hr))
        return hr;

    hr = BeginConnection(pConnector, &offered);
    if (SUCCEEDED(hr))
        hr = CompleteConnect(pConnector);
    if (FAILED(hr))
        AbandonConnection();
    return hr;
}

HRESULT CBasePin::AgreeMediaType(IPin* pReceivePin, const CMediaType* pmt) {
    if (pmt && !pmt->IsPartiallySpecified())
        return AttemptConnection(pReceivePin, pmt);

    HRESULT failure = VFW_E_NO_ACCEPTABLE_TYPES;
    IPin* const both[] = {m_bTryMyTypesFirst ? this : pReceivePin, m_bTryMyTypesFirst ? pReceivePin : this};
    for (IPin* pin : both) {
        IEnumMediaTypes* pEnum = nullptr;
        if (FAILED(pin->EnumMediaTypes(&pEnum)) || !pEnum)
            continue;
        const ComRef<IEnumMediaTypes> types(pEnum);
        const HRESULT hr = TryMediaTypes(pReceivePin, pmt, pEnum);
        if (SUCCEEDED(hr))
            return S_OK;
        if (failure == VFW_E_NO_ACCEPTABLE_TYPES && !SaysTypeRefused(hr))
            failure = hr;
    }
    return failure;
}

HRESULT CBasePin::TryMediaTypes(IPin* pReceivePin, const CMediaType* pmt, IEnumMediaTypes* pEnum) {
    HRESULT failure = VFW_E_NO_ACCEPTABLE_TYPES;
    pEnum->Reset();
    AM_MEDIA_TYPE* pNext = nullptr;
    while (pEnum->Next(1, &pNext, nullptr) == S_OK) {
        CMediaType candidate;
        HRESULT hr = candidate.Set(*pNext);
        DeleteMediaType(pNext);
        if (FAILED(hr))
            return hr;
        if (pmt && !candidate.MatchesPartial(pmt))
            continue;
        hr = AttemptConnection(pReceivePin, &candidate);
        if (SUCCEEDED(hr))
            return S_OK;
        if (failure == VFW_E_NO_ACCEPTABLE_TYPES && !SaysTypeRefused(hr))
            failure = hr;
    }
    return failure;
}

HRESULT CBasePin::AttemptConnection(IPin* pReceivePin, const CMediaType* pmt) {
    HRESULT hr = BeginConnection(pReceivePin, pmt);
    if (SUCCEEDED(hr))
        hr = pReceivePin->ReceiveConnection(this, pmt);
    if (SUCCEEDED(hr)) {
        hr = CompleteConnect(pReceivePin);
        if (FAILED(hr))
            pReceivePin->Disconnect();
    }
    if (FAILED(hr))
        AbandonConnection();
    return hr;
}

HRESULT CBasePin::BeginConnection(IPin* pPeer, const CMediaType* pmt) {
    HRESULT hr = CheckConnect(pPeer);
    if (FAILED(hr))
        return hr;
    hr = CheckMediaType(pmt);
    if (hr != S_OK)
        return SaysTypeRefused(hr) ? VFW_E_TYPE_NOT_ACCEPTED : hr;
    SetConnected(pPeer);
    return SetMediaType(pmt);
}

void CBasePin::AbandonConnection() {
    BreakConnect();
    SetConnected(nullptr);
}

void CBasePin::SetConnected(IPin* pPin) {
    if (pPin)
        pPin->AddRef();
    {
        CAutoLock lock(&m_connectionLock);
        pPin = m_Connected.exchange(pPin);
    }
    if (pPin)
        pPin->Release();
}

STDMETHODIMP CBasePin::Disconnect() {
    CAutoLock lock(m_pLock);
    if (!m_pFilter->IsAtRest())
        return VFW_E_NOT_STOPPED;
    if (!m_Connected)
        return S_FALSE;
    const HRESULT hr = BreakConnect();
    if (FAILED(hr))
        return hr;
    SetConnected(nullptr);
    return S_OK;
}

STDMETHODIMP CBasePin::ConnectedTo(IPin** pPin) {
    if (!pPin)
        return E_POINTER;
    CAutoLock lock(&m_connectionLock);
    *pPin = m_Connected;
    if (!*pPin)
        return VFW_E_NOT_CONNECTED;
    (*pPin)->AddRef();
    return S_OK;
}

STDMETHODIMP CBasePin::ConnectionMediaType(AM_MEDIA_TYPE* pmt) {
    if (!pmt)
        return E_POINTER;
    CAutoLock lock(&m_connectionLock);
    if (m_Connected)
        return CopyMediaType(pmt, &m_mt);
    *pmt = AM_MEDIA_TYPE{};
    return VFW_E_NOT_CONNECTED;
}

STDMETHODIMP CBasePin::QueryPinInfo(PIN_INFO* pInfo) {
    if (!pInfo)
        return E_POINTER;
    pInfo->pFilter = m_pFilter;
    m_pFilter->AddRef();
    pInfo->dir = m_dir;
    CopyToNameField(pInfo->achName, MAX_PIN_NAME, Name());
    return S_OK;
}

STDMETHODIMP CBasePin::QueryDirection(PIN_DIRECTION* pPinDir) {
    if (!pPinDir)
        return E_POINTER;
    *pPinDir = m_dir;
    return S_OK;
}

STDMETHODIMP CBasePin::QueryId(LPWSTR* Id) {
    return AMGetWideString(Name(), Id);
}

STDMETHODIMP CBasePin::QueryAccept(const AM_MEDIA_TYPE* pmt) {
    if (!pmt)
        return E_POINTER;
    CMediaType mt;
    const HRESULT hr = mt.Set(*pmt);
    if (FAILED(hr))
        return hr;
    return CheckMediaType(&mt) == S_OK ? S_OK : S_FALSE;
}

STDMETHODIMP CBasePin::EnumMediaTypes(IEnumMediaTypes** ppEnum) {
    if (!ppEnum)
        return E_POINTER;
    *ppEnum = new (std::nothrow) CEnumMediaTypes(this);
    if (!*ppEnum)
        return E_OUTOFMEMORY;
    (*ppEnum)->AddRef();
    return S_OK;
}

STDMETHODIMP CBasePin::QueryInternalConnections(IPin**, ULONG*) {
    return E_NOTIMPL;
}

STDMETHODIMP CBasePin::EndOfStream() {
    return S_OK;
}

STDMETHODIMP CBasePin::NewSegment(REFERENCE_TIME tStart, REFERENCE_TIME tStop, double dRate) {
    m_tStart = tStart;
    m_tStop = tStop;
    m_dRate = dRate;
    return S_OK;
}

STDMETHODIMP CBasePin::Notify(IBaseFilter*, Quality) {
    return E_NOTIMPL;
}

STDMETHODIMP CBasePin::SetSink(IQualityControl* piqc) {
    m_pQSink = piqc;
    return S_OK;
}

bool CBasePin::IsStopped() const {
    return m_pFilter->IsStopped();
}

HRESULT CBasePin::Active() {
    return S_OK;
}

HRESULT CBasePin::Run(REFERENCE_TIME) {
    return S_OK;
}

HRESULT CBasePin::Inactive() {
    m_bRunTimeError = false;
    return S_OK;
}

HRESULT CBasePin::SetMediaType(const CMediaType* pmt) {
    CAutoLock lock(&m_connectionLock);
    return m_mt.Set(*pmt);
}

HRESULT CBasePin::GetMediaType(int, CMediaType*) {
    return VFW_S_NO_MORE_ITEMS;
}

HRESULT CBasePin::CheckConnect(IPin* pPin) {
    PIN_DIRECTION peer = m_dir;
    pPin->QueryDirection(&peer);
    return peer == m_dir ? VFW_E_INVALID_DIRECTION : S_OK;
}

HRESULT CBasePin::CompleteConnect(IPin*) {
    return S_OK;
}

HRESULT CBasePin::BreakConnect() {
    return S_OK;
}
