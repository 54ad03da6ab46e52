#include "baseclasses/TransformPins.h"

#include "baseclasses/PosPassThru.h"
#include "baseclasses/TransformFilter.h"
#include "baseclasses/WideString.h"
#include "platform/ComGuard.h"

CTransformInputPin::CTransformInputPin(LPCTSTR pObjectName, CTransformFilter* pTransformFilter, HRESULT* phr,
                                       LPCWSTR pName)
    : CBaseInputPin(pObjectName, pTransformFilter, &pTransformFilter->m_csFilter, phr, pName),
      m_pTransformFilter(pTransformFilter) {}

STDMETHODIMP CTransformInputPin::QueryId(LPWSTR* Id) {
    return AMGetWideString(L"In", Id);
}

STDMETHODIMP CTransformInputPin::EndOfStream() {
    const CTransformFilter::Receiving receiving(m_pTransformFilter);
    const HRESULT hr = CheckStreaming();
    return hr == S_OK ? m_pTransformFilter->EndOfStream() : hr;
}

STDMETHODIMP CTransformInputPin::BeginFlush() {
    CAutoLock lock(&m_pTransformFilter->m_csFilter);
    if (!IsConnected() || !m_pTransformFilter->m_pOutput->IsConnected())
        return VFW_E_NOT_CONNECTED;
    const HRESULT hr = CBaseInputPin::BeginFlush();
    return FAILED(hr) ? hr : m_pTransformFilter->BeginFlush();
}

STDMETHODIMP CTransformInputPin::EndFlush() {
    CAutoLock lock(&m_pTransformFilter->m_csFilter);
    if (!IsConnected() || !m_pTransformFilter->m_pOutput->IsConnected())
        return VFW_E_NOT_CONNECTED;
    const HRESULT hr = m_pTransformFilter->EndFlush();
    return FAILED(hr) ? hr : CBaseInputPin::EndFlush();
}

STDMETHODIMP CTransformInputPin::NewSegment(REFERENCE_TIME tStart, REFERENCE_TIME tStop, double dRate) {
    CBasePin::NewSegment(tStart, tStop, dRate);
    return m_pTransformFilter->NewSegment(tStart, tStop, dRate);
}

STDMETHODIMP CTransformInputPin::Receive(IMediaSample* pSample) {
    return scenedetect::Guarded([&]() -> HRESULT {
        const CTransformFilter::Receiving receiving(m_pTransformFilter);
        const HRESULT hr = CBaseInputPin::Receive(pSample);
        return hr == S_OK ? m_pTransformFilter->Receive(pSample) : hr;
    });
}

HRESULT CTransformInputPin::CheckConnect(IPin* pPin) {
    const HRESULT hr = m_pTransformFilter->CheckConnect(PINDIR_INPUT, pPin);
    return FAILED(hr) ? hr : CBaseInputPin::CheckConnect(pPin);
}

HRESULT CTransformInputPin::BreakConnect() {
    m_pTransformFilter->BreakConnect(PINDIR_INPUT);
    return CBaseInputPin::BreakConnect();
}

HRESULT CTransformInputPin::CompleteConnect(IPin* pReceivePin) {
    const HRESULT hr = CBaseInputPin::CompleteConnect(pReceivePin);
    return FAILED(hr) ? hr : m_pTransformFilter->CompleteConnect(PINDIR_INPUT, pReceivePin);
}

HRESULT CTransformInputPin::SetMediaType(const CMediaType* pmt) {
    const HRESULT hr = CBasePin::SetMediaType(pmt);
    return FAILED(hr) ? hr : m_pTransformFilter->SetMediaType(PINDIR_INPUT, pmt);
}

HRESULT CTransformInputPin::CheckStreaming() {
    if (!m_pTransformFilter->m_pOutput->IsConnected())
        return VFW_E_NOT_CONNECTED;
    return CBaseInputPin::CheckStreaming();
}

CTransformOutputPin::CTransformOutputPin(LPCTSTR pObjectName, CTransformFilter* pTransformFilter,
                                         HRESULT* phr, LPCWSTR pName)
    : CBaseOutputPin(pObjectName, pTransformFilter, &pTransformFilter->m_csFilter, phr, pName),
      m_pTransformFilter(pTransformFilter) {}

STDMETHODIMP CTransformOutputPin::NonDelegatingQueryInterface(REFIID riid, void** ppv) {
    if (riid != IID_IMediaSeeking && riid != IID_IMediaPosition)
        return CBaseOutputPin::NonDelegatingQueryInterface(riid, ppv);
    if (!ppv)
        return E_POINTER;
    *ppv = nullptr;
    // Not the filter's lock: a thread downstream that asks while the filter is being stopped must not wait.
    CAutoLock lock(&m_positionLock);
    if (!m_pPosition) {
        HRESULT hr = S_OK;
        auto* position =
            new (std::nothrow) CPosPassThru(NAME("position"), GetOwner(), &hr, m_pTransformFilter->m_pInput);
        if (!position)
            return E_OUTOFMEMORY;
        void* inner = nullptr;
        position->NonDelegatingQueryInterface(IID_IUnknown, &inner);
        m_pPosition.reset(static_cast<IUnknown*>(inner));
    }
    return m_pPosition->QueryInterface(riid, ppv);
}

STDMETHODIMP CTransformOutputPin::QueryId(LPWSTR* Id) {
    return AMGetWideString(L"Out", Id);
}

STDMETHODIMP CTransformOutputPin::Notify(IBaseFilter*, Quality q) {
    const HRESULT hr = m_pTransformFilter->AlterQuality(q);
    return hr == S_FALSE ? m_pTransformFilter->m_pInput->PassNotify(q) : hr;
}

HRESULT CTransformOutputPin::CheckConnect(IPin* pPin) {
    if (!m_pTransformFilter->m_pInput->IsConnected())
        return E_UNEXPECTED;
    const HRESULT hr = m_pTransformFilter->CheckConnect(PINDIR_OUTPUT, pPin);
    return FAILED(hr) ? hr : CBaseOutputPin::CheckConnect(pPin);
}

HRESULT CTransformOutputPin::BreakConnect() {
    m_pTransformFilter->BreakConnect(PINDIR_OUTPUT);
    return CBaseOutputPin::BreakConnect();
}

HRESULT CTransformOutputPin::CompleteConnect(IPin* pReceivePin) {
    const HRESULT hr = CBaseOutputPin::CompleteConnect(pReceivePin);
    return FAILED(hr) ? hr : m_pTransformFilter->CompleteConnect(PINDIR_OUTPUT, pReceivePin);
}

HRESULT CTransformOutputPin::SetMediaType(const CMediaType* pmt) {
    const HRESULT hr = CBasePin::SetMediaType(pmt);
    return FAILED(hr) ? hr : m_pTransformFilter->SetMediaType(PINDIR_OUTPUT, pmt);
}

HRESULT CTransformOutputPin::GetMediaType(int iPosition, CMediaType* pMediaType) {
    return m_pTransformFilter->GetMediaType(iPosition, pMediaType);
}

HRESULT CTransformOutputPin::DecideBufferSize(IMemAllocator* pAlloc, ALLOCATOR_PROPERTIES* pProp) {
    return m_pTransformFilter->DecideBufferSize(pAlloc, pProp);
}
