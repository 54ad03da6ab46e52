#include "baseclasses/TransformFilter.h"

#include "baseclasses/MediaSample.h"

#include <string_view>

CTransformFilter::CTransformFilter(LPCTSTR pName, LPUNKNOWN pUnk, REFCLSID clsid)
    : CBaseFilter(pName, pUnk, &m_csFilter, clsid) {}

CTransformFilter::~CTransformFilter() {
    delete m_pInput;
    delete m_pOutput;
}

int CTransformFilter::GetPinCount() {
    return 2;
}

STDMETHODIMP CTransformFilter::FindPin(LPCWSTR Id, IPin** ppPin) {
    if (!Id || !ppPin)
        return E_POINTER;
    *ppPin = nullptr;
    const std::wstring_view id(Id);
    if (id == L"In")
        *ppPin = GetPin(0);
    else if (id == L"Out")
        *ppPin = GetPin(1);
    else
        return VFW_E_NOT_FOUND;
    if (!*ppPin)
        return E_OUTOFMEMORY;
    (*ppPin)->AddRef();
    return S_OK;
}

bool CTransformFilter::BothConnected() const {
    return m_pInput && m_pInput->IsConnected() && m_pOutput && m_pOutput->IsConnected();
}

STDMETHODIMP CTransformFilter::Stop() {
    {
        // Who comes next finds the filter stopped, and whoever waits for a buffer with the receive lock held
        // gives up.
        CAutoLock lock(&m_csFilter);
        if (m_State != State_Stopped && BothConnected()) {
            m_State = State_Stopped;
            m_pInput->Inactive();
            m_pOutput->Inactive();
        }
        m_State = State_Stopped;
        m_bEOSDelivered = false;
    }
    // Only then can the receive lock be waited for, and without the filter's: whoever holds it may be
    // downstream, asking for that.
    CAutoLock receiving(&m_csReceive);
    return S_OK;
}

STDMETHODIMP CTransformFilter::Pause() {
    CAutoLock lock(&m_csFilter);
    HRESULT hr = S_OK;
    if (BothConnected()) {
        hr = CBaseFilter::Pause();
    } else if (m_State != State_Paused) {
        // Downstream would wait for data that can't come.
        const bool outputOnly = m_pOutput && m_pOutput->IsConnected();
        if (outputOnly && !m_bEOSDelivered) {
            m_pOutput->DeliverEndOfStream();
            m_bEOSDelivered = true;
        }
        m_State = State_Paused;
    }
    m_bSampleSkipped = false;
    m_bQualityChanged = false;
    return hr;
}

HRESULT CTransformFilter::DeliverTransformed(HRESULT transformed, IMediaSample* pSample) {
    if (FAILED(transformed))
        return transformed;
    if (transformed == S_FALSE) {
        NoteSkippedSample();
        return S_OK;
    }
    m_bSampleSkipped = false;
    return m_pOutput->Deliver(pSample);
}

HRESULT CTransformFilter::InitializeOutputSample(IMediaSample* pSample, IMediaSample** ppOutSample) {
    const AM_SAMPLE2_PROPERTIES& in = *m_pInput->SampleProps();
    REFERENCE_TIME start = in.tStart;
    REFERENCE_TIME stop = in.tStop;
    DWORD flags = m_bSampleSkipped ? AM_GBF_PREVFRAMESKIPPED : 0;
    if (!(in.dwSampleFlags & AM_SAMPLE_SPLICEPOINT))
        flags |= AM_GBF_NOTASYNCPOINT;
    const HRESULT hr =
        m_pOutput->GetDeliveryBuffer(ppOutSample, in.dwSampleFlags & AM_SAMPLE_TIMEVALID ? &start : nullptr,
                                     in.dwSampleFlags & AM_SAMPLE_STOPVALID ? &stop : nullptr, flags);
    if (SUCCEEDED(hr))
        CopySampleProperties(pSample, *ppOutSample);
    return hr;
}

void CTransformFilter::NoteSkippedSample() {
    m_bSampleSkipped = true;
    if (!m_bQualityChanged.exchange(true))
        NotifyEvent(EC_QUALITY_CHANGE, 0, 0);
}

HRESULT CTransformFilter::EndOfStream() {
    return m_pOutput->DeliverEndOfStream();
}

HRESULT CTransformFilter::BeginFlush() {
    return m_pOutput->DeliverBeginFlush();
}

HRESULT CTransformFilter::EndFlush() {
    return m_pOutput->DeliverEndFlush();
}

HRESULT CTransformFilter::NewSegment(REFERENCE_TIME tStart, REFERENCE_TIME tStop, double dRate) {
    return m_pOutput->DeliverNewSegment(tStart, tStop, dRate);
}

HRESULT CTransformFilter::AlterQuality(Quality) {
    return S_FALSE;
}

HRESULT CTransformFilter::SetMediaType(PIN_DIRECTION, const CMediaType*) {
    return S_OK;
}

HRESULT CTransformFilter::CheckConnect(PIN_DIRECTION, IPin*) {
    return S_OK;
}

HRESULT CTransformFilter::BreakConnect(PIN_DIRECTION) {
    return S_OK;
}

HRESULT CTransformFilter::CompleteConnect(PIN_DIRECTION, IPin*) {
    return S_OK;
}
