#include "baseclasses/BaseInputPin.h"

#include "baseclasses/Allocator.h"
#include "baseclasses/BaseFilter.h"
#include "baseclasses/ComRef.h"

HRESULT CreateMemoryAllocator(IMemAllocator** ppAllocator) {
    HRESULT hr = S_OK;
    *ppAllocator = new (std::nothrow) CMemAllocator(NAME("allocator"), nullptr, &hr);
    if (!*ppAllocator)
        return E_OUTOFMEMORY;
    (*ppAllocator)->AddRef();
    return S_OK;
}

CBaseInputPin::CBaseInputPin(LPCTSTR pObjectName, CBaseFilter* pFilter, CCritSec* pLock, HRESULT* phr,
                             LPCWSTR pName)
    : CBasePin(pObjectName, pFilter, pLock, phr, pName, PINDIR_INPUT) {}

CBaseInputPin::~CBaseInputPin() {
    if (m_pAllocator)
        m_pAllocator->Release();
}

STDMETHODIMP CBaseInputPin::NonDelegatingQueryInterface(REFIID riid, void** ppv) {
    if (riid == IID_IMemInputPin)
        return GetInterface(static_cast<IMemInputPin*>(this), ppv);
    return CBasePin::NonDelegatingQueryInterface(riid, ppv);
}

STDMETHODIMP CBaseInputPin::GetAllocator(IMemAllocator** ppAllocator) {
    if (!ppAllocator)
        return E_POINTER;
    *ppAllocator = nullptr;
    CAutoLock lock(m_pLock);
    if (!m_pAllocator) {
        const HRESULT hr = CreateMemoryAllocator(&m_pAllocator);
        if (FAILED(hr))
            return hr;
    }
    m_pAllocator->AddRef();
    *ppAllocator = m_pAllocator;
    return S_OK;
}

STDMETHODIMP CBaseInputPin::NotifyAllocator(IMemAllocator* pAllocator, BOOL bReadOnly) {
    if (!pAllocator)
        return E_POINTER;
    CAutoLock lock(m_pLock);
    pAllocator->AddRef();
    if (m_pAllocator)
        m_pAllocator->Release();
    m_pAllocator = pAllocator;
    m_bReadOnly = bReadOnly != FALSE;
    return S_OK;
}

STDMETHODIMP CBaseInputPin::GetAllocatorRequirements(ALLOCATOR_PROPERTIES*) {
    return E_NOTIMPL;
}

STDMETHODIMP CBaseInputPin::Receive(IMediaSample* pSample) {
    if (!pSample)
        return E_POINTER;
    HRESULT hr = CheckStreaming();
    if (hr != S_OK)
        return hr;
    ReadSampleProps(pSample);
    // A sample of another make may say that its type has changed and not have one.
    if (!(m_SampleProps.dwSampleFlags & AM_SAMPLE_TYPECHANGED) || !m_SampleProps.pMediaType)
        return S_OK;

    CMediaType attached;
    hr = attached.Set(*m_SampleProps.pMediaType);
    if (FAILED(hr))
        return hr;
    if (CheckMediaType(&attached) == S_OK)
        return S_OK;

    // Upstream changed the type without asking. Downstream is told of the end before this pin
    // refuses samples.
    EndOfStream();
    m_bRunTimeError = true;
    m_pFilter->NotifyEvent(EC_ERRORABORT, VFW_E_TYPE_NOT_ACCEPTED, 0);
    return VFW_E_INVALIDMEDIATYPE;
}

void CBaseInputPin::ReadSampleProps(IMediaSample* pSample) {
    m_SampleProps = {};
    if (const auto sample2 = QueryFor<IMediaSample2>(pSample, IID_IMediaSample2)) {
        if (SUCCEEDED(sample2->GetProperties(sizeof m_SampleProps, reinterpret_cast<BYTE*>(&m_SampleProps))))
            return;
        m_SampleProps = {};
    }

    m_SampleProps.cbData = sizeof m_SampleProps;
    m_SampleProps.lActual = pSample->GetActualDataLength();
    m_SampleProps.cbBuffer = pSample->GetSize();
    pSample->GetPointer(&m_SampleProps.pbBuffer);
    DWORD flags = 0;
    if (pSample->IsSyncPoint() == S_OK)
        flags |= AM_SAMPLE_SPLICEPOINT;
    if (pSample->IsPreroll() == S_OK)
        flags |= AM_SAMPLE_PREROLL;
    if (pSample->IsDiscontinuity() == S_OK)
        flags |= AM_SAMPLE_DATADISCONTINUITY;
    const HRESULT times = pSample->GetTime(&m_SampleProps.tStart, &m_SampleProps.tStop);
    if (SUCCEEDED(times))
        flags |= AM_SAMPLE_TIMEVALID;
    if (times == S_OK)
        flags |= AM_SAMPLE_STOPVALID;
    AM_MEDIA_TYPE* pmt = nullptr;
    if (pSample->GetMediaType(&pmt) == S_OK) {
        m_attachedType.Set(*pmt);
        DeleteMediaType(pmt);
        m_SampleProps.pMediaType = &m_attachedType;
        flags |= AM_SAMPLE_TYPECHANGED;
    }
    m_SampleProps.dwSampleFlags = flags;
}

STDMETHODIMP CBaseInputPin::ReceiveMultiple(IMediaSample** pSamples, LONG nSamples, LONG* nSamplesProcessed) {
    if (!pSamples || !nSamplesProcessed)
        return E_POINTER;
    HRESULT hr = S_OK;
    for (*nSamplesProcessed = 0; *nSamplesProcessed < nSamples; ++*nSamplesProcessed) {
        hr = Receive(pSamples[*nSamplesProcessed]);
        if (hr != S_OK)
            break;
    }
    return hr;
}

STDMETHODIMP CBaseInputPin::ReceiveCanBlock() {
    bool delivers = false;
    for (int n = 0; n < m_pFilter->GetPinCount(); ++n) {
        CBasePin* pin = m_pFilter->GetPin(n);
        IPin* pPeer = nullptr;
        if (!pin || pin->IsInput() || FAILED(pin->ConnectedTo(&pPeer)))
            continue;
        const ComRef<IPin> peer(pPeer);
        const auto input = QueryFor<IMemInputPin>(pPeer, IID_IMemInputPin);
        // Whatever another way of transport does may block.
        if (!input || input->ReceiveCanBlock() != S_FALSE)
            return S_OK;
        delivers = true;
    }
    return delivers ? S_FALSE : S_OK;
}

STDMETHODIMP CBaseInputPin::BeginFlush() {
    CAutoLock lock(m_pLock);
    m_bFlushing = true;
    return S_OK;
}

STDMETHODIMP CBaseInputPin::EndFlush() {
    CAutoLock lock(m_pLock);
    m_bFlushing = false;
    m_bRunTimeError = false;
    return S_OK;
}

HRESULT CBaseInputPin::Inactive() {
    m_bFlushing = false;
    m_bRunTimeError = false;
    return m_pAllocator ? m_pAllocator->Decommit() : VFW_E_NO_ALLOCATOR;
}

HRESULT CBaseInputPin::BreakConnect() {
    if (!m_pAllocator)
        return S_OK;
    const HRESULT hr = m_pAllocator->Decommit();
    if (FAILED(hr))
        return hr;
    m_pAllocator->Release();
    m_pAllocator = nullptr;
    m_bReadOnly = false;
    return S_OK;
}

HRESULT CBaseInputPin::CheckStreaming() {
    if (!IsConnected())
        return VFW_E_NOT_CONNECTED;
    if (IsStopped())
        return VFW_E_WRONG_STATE;
    if (m_bFlushing)
        return S_FALSE;
    return m_bRunTimeError ? VFW_E_RUNTIME_ERROR : S_OK;
}

HRESULT CBaseInputPin::PassNotify(Quality& q) {
    if (IQualityControl* sink = m_pQSink)
        return sink->Notify(m_pFilter, q);
    IPin* pPeer = nullptr;
    if (FAILED(ConnectedTo(&pPeer)))
        return VFW_E_NOT_FOUND;
    const ComRef<IPin> peer(pPeer);
    const auto upstream = QueryFor<IQualityControl>(pPeer, IID_IQualityControl);
    return upstream ? upstream->Notify(m_pFilter, q) : VFW_E_NOT_FOUND;
}
