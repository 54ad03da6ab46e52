#include "baseclasses/TransInPlacePins.h"

#include "baseclasses/TransInPlaceFilter.h"

CTransInPlaceInputPin::CTransInPlaceInputPin(LPCTSTR pObjectName, CTransInPlaceFilter* pFilter, HRESULT* phr,
                                             LPCWSTR pName)
    : CTransformInputPin(pObjectName, pFilter, phr, pName), m_pTIPFilter(pFilter) {}

STDMETHODIMP CTransInPlaceInputPin::EnumMediaTypes(IEnumMediaTypes** ppEnum) {
    if (!ppEnum)
        return E_POINTER;
    *ppEnum = nullptr;
    IPin* pDownstream = nullptr;
    const HRESULT hr = m_pTIPFilter->OutputPin()->ConnectedTo(&pDownstream);
    if (FAILED(hr))
        return hr;
    return ComRef<IPin>(pDownstream)->EnumMediaTypes(ppEnum);
}

STDMETHODIMP CTransInPlaceInputPin::GetAllocator(IMemAllocator** ppAllocator) {
    CAutoLock lock(m_pLock);
    IMemInputPin* downstream = m_pTIPFilter->OutputPin()->ConnectedIMemInputPin();
    return downstream ? downstream->GetAllocator(ppAllocator) : CTransformInputPin::GetAllocator(ppAllocator);
}

STDMETHODIMP CTransInPlaceInputPin::NotifyAllocator(IMemAllocator* pAllocator, BOOL bReadOnly) {
    CAutoLock lock(m_pLock);
    const HRESULT hr = CTransformInputPin::NotifyAllocator(pAllocator, bReadOnly);
    if (FAILED(hr) || !m_pTIPFilter->OutputPin()->IsConnected())
        return hr;
    return m_pTIPFilter->OutputPin()->RedecideAllocator();
}

STDMETHODIMP CTransInPlaceInputPin::GetAllocatorRequirements(ALLOCATOR_PROPERTIES* pProps) {
    if (!pProps)
        return E_POINTER;
    CAutoLock lock(m_pLock);
    IMemInputPin* downstream = m_pTIPFilter->OutputPin()->ConnectedIMemInputPin();
    return downstream ? downstream->GetAllocatorRequirements(pProps) : E_NOTIMPL;
}

HRESULT CTransInPlaceInputPin::CheckMediaType(const CMediaType* pmt) {
    const HRESULT hr = m_pTIPFilter->CheckInputType(pmt);
    IPin* pDownstream = nullptr;
    if (hr != S_OK || FAILED(m_pTIPFilter->OutputPin()->ConnectedTo(&pDownstream)))
        return hr;
    return ComRef<IPin>(pDownstream)->QueryAccept(pmt);
}

CTransInPlaceOutputPin::CTransInPlaceOutputPin(LPCTSTR pObjectName, CTransInPlaceFilter* pFilter,
                                               HRESULT* phr, LPCWSTR pName)
    : CTransformOutputPin(pObjectName, pFilter, phr, pName), m_pTIPFilter(pFilter) {}

HRESULT CTransInPlaceOutputPin::CheckMediaType(const CMediaType* pmt) {
    // The copies have the size that was agreed when the filter was stopped.
    if (!IsStopped() && m_pTIPFilter->UsingDifferentAllocators()) {
        CMediaType current;
        const HRESULT hr = ConnectionMediaType(&current);
        if (FAILED(hr))
            return hr;
        return *pmt == current ? S_OK : VFW_E_TYPE_NOT_ACCEPTED;
    }
    const HRESULT hr = m_pTIPFilter->CheckInputType(pmt);
    IPin* pUpstream = nullptr;
    if (hr != S_OK || FAILED(m_pTIPFilter->InputPin()->ConnectedTo(&pUpstream)))
        return hr;
    return ComRef<IPin>(pUpstream)->QueryAccept(pmt);
}

HRESULT CTransInPlaceOutputPin::DecideAllocator(IMemInputPin* pPin, IMemAllocator** ppAlloc) {
    const CTransInPlaceInputPin* input = m_pTIPFilter->InputPin();
    IMemAllocator* upstream = input->PeekAllocator();
    const bool writable = !(input->ReadOnly() && m_pTIPFilter->m_bModifiesData);
    if (upstream && writable && SUCCEEDED(pPin->NotifyAllocator(upstream, input->ReadOnly()))) {
        upstream->AddRef();
        *ppAlloc = upstream;
        return S_OK;
    }
    return ChooseAllocator(pPin, upstream, ppAlloc);
}

HRESULT CTransInPlaceOutputPin::RedecideAllocator() {
    IMemAllocator* chosen = nullptr;
    const HRESULT hr = DecideAllocator(m_pInputPin, &chosen);
    if (FAILED(hr))
        return hr;
    if (m_pAllocator)
        m_pAllocator->Release();
    m_pAllocator = chosen;
    return S_OK;
}
