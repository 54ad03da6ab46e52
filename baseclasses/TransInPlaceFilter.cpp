#include "baseclasses/TransInPlaceFilter.h"

#include <cstring>

CTransInPlaceFilter::CTransInPlaceFilter(LPCTSTR pName, LPUNKNOWN pUnk, REFCLSID clsid, HRESULT*,
                                         bool bModifiesData)
    : CTransformFilter(pName, pUnk, clsid), m_bModifiesData(bModifiesData) {}

CBasePin* CTransInPlaceFilter::GetPin(int n) {
    CAutoLock lock(&m_infoLock);
    HRESULT hr = S_OK;
    if (!m_pInput)
        m_pInput = new (std::nothrow) CTransInPlaceInputPin(NAME("input"), this, &hr, L"Input");
    if (!m_pOutput)
        m_pOutput = new (std::nothrow) CTransInPlaceOutputPin(NAME("output"), this, &hr, L"Output");
    // Each pin relies on the other.
    if (!m_pInput || !m_pOutput)
        return nullptr;
    if (n == 0)
        return m_pInput;
    return n == 1 ? m_pOutput : nullptr;
}

HRESULT CTransInPlaceFilter::CheckTransform(const CMediaType*, const CMediaType*) {
    return S_OK;
}

HRESULT CTransInPlaceFilter::CompleteConnect(PIN_DIRECTION dir, IPin*) {
    if (!m_pInput->IsConnected() || !m_pOutput->IsConnected())
        return S_OK;
    const bool sameType = m_pInput->CurrentMediaType() == m_pOutput->CurrentMediaType();
    if (!Graph())
        return sameType ? S_OK : VFW_E_NOT_IN_GRAPH;
    if (dir == PINDIR_OUTPUT)
        return ReconnectPin(m_pInput, &m_pOutput->CurrentMediaType());
    return sameType ? S_OK : ReconnectPin(m_pOutput, &m_pInput->CurrentMediaType());
}

bool CTransInPlaceFilter::UsingDifferentAllocators() const {
    return InputPin()->PeekAllocator() != OutputPin()->PeekAllocator();
}

HRESULT CTransInPlaceFilter::Receive(IMediaSample* pSample) {
    if (m_pInput->SampleProps()->dwStreamId != AM_STREAM_MEDIA)
        return m_pOutput->Deliver(pSample);

    ComRef<IMediaSample> copy;
    if (UsingDifferentAllocators()) {
        const HRESULT hr = Copy(pSample, &pSample);
        if (FAILED(hr))
            return hr;
        copy.reset(pSample);
    }
    return DeliverTransformed(Transform(pSample), pSample);
}

HRESULT CTransInPlaceFilter::Copy(IMediaSample* pSource, IMediaSample** ppCopy) {
    IMediaSample* pDest = nullptr;
    HRESULT hr = InitializeOutputSample(pSource, &pDest);
    if (FAILED(hr))
        return hr;
    ComRef<IMediaSample> dest(pDest);

    const LONG length = pSource->GetActualDataLength();
    hr = pDest->SetActualDataLength(length);
    if (FAILED(hr))
        return hr;
    BYTE* from = nullptr;
    BYTE* to = nullptr;
    hr = pSource->GetPointer(&from);
    if (SUCCEEDED(hr))
        hr = pDest->GetPointer(&to);
    if (FAILED(hr))
        return hr;
    if (length > 0)
        std::memcpy(to, from, static_cast<std::size_t>(length));

    // Also when there is none: downstream may have attached a type to its buffer.
    AM_MEDIA_TYPE* pmt = nullptr;
    hr = pSource->GetMediaType(&pmt);
    if (SUCCEEDED(hr))
        hr = pDest->SetMediaType(pmt);
    DeleteMediaType(pmt);
    if (FAILED(hr))
        return hr;
    *ppCopy = dest.release();
    return S_OK;
}
