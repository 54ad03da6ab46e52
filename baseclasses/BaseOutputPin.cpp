#include "baseclasses/BaseOutputPin.h"

#include "baseclasses/BaseFilter.h"
#include "baseclasses/BaseInputPin.h"
#include "baseclasses/ComRef.h"

CBaseOutputPin::CBaseOutputPin(LPCTSTR pObjectName, CBaseFilter* pFilter, CCritSec* pLock, HRESULT* phr,
                               LPCWSTR pName)
    : CBasePin(pObjectName, pFilter, pLock, phr, pName, PINDIR_OUTPUT) {}

CBaseOutputPin::~CBaseOutputPin() {
    if (m_pAllocator)
        m_pAllocator->Release();
    if (m_pInputPin)
        m_pInputPin->Release();
}

HRESULT CBaseOutputPin::CheckConnect(IPin* pPin) {
    const HRESULT hr = CBasePin::CheckConnect(pPin);
    if (FAILED(hr))
        return hr;
    void* found = nullptr;
    const HRESULT transport = pPin->QueryInterface(IID_IMemInputPin, &found);
    if (FAILED(transport))
        return transport;
    m_pInputPin = static_cast<IMemInputPin*>(found);
    return S_OK;
}

HRESULT CBaseOutputPin::CompleteConnect(IPin*) {
    return DecideAllocator(m_pInputPin, &m_pAllocator);
}

HRESULT CBaseOutputPin::BreakConnect() {
    if (m_pAllocator) {
        const HRESULT hr = m_pAllocator->Decommit();
        if (FAILED(hr))
            return hr;
        m_pAllocator->Release();
        m_pAllocator = nullptr;
    }
    if (m_pInputPin) {
        m_pInputPin->Release();
        m_pInputPin = nullptr;
    }
    return S_OK;
}

HRESULT CBaseOutputPin::Active() {
    return m_pAllocator ? m_pAllocator->Commit() : VFW_E_NO_ALLOCATOR;
}

HRESULT CBaseOutputPin::Inactive() {
    m_bRunTimeError = false;
    return m_pAllocator ? m_pAllocator->Decommit() : VFW_E_NO_ALLOCATOR;
}

STDMETHODIMP CBaseOutputPin::EndOfStream() {
    return E_UNEXPECTED;
}

STDMETHODIMP CBaseOutputPin::BeginFlush() {
    return E_UNEXPECTED;
}

STDMETHODIMP CBaseOutputPin::EndFlush() {
    return E_UNEXPECTED;
}

HRESULT CBaseOutputPin::DecideAllocator(IMemInputPin* pPin, IMemAllocator** pAlloc) {
    return ChooseAllocator(pPin, nullptr, pAlloc);
}

HRESULT CBaseOutputPin::ChooseAllocator(IMemInputPin* pPin, const IMemAllocator* unwanted,
                                        IMemAllocator** ppAlloc) {
    *ppAlloc = nullptr;
    IMemAllocator* candidate = nullptr;
    if (SUCCEEDED(pPin->GetAllocator(&candidate))) {
        ComRef<IMemAllocator> peers(candidate);
        if (candidate != unwanted && SUCCEEDED(OfferAllocator(pPin, candidate))) {
            *ppAlloc = peers.release();
            return S_OK;
        }
    }

    HRESULT hr = InitAllocator(&candidate);
    if (FAILED(hr))
        return hr;
    ComRef<IMemAllocator> own(candidate);
    hr = OfferAllocator(pPin, candidate);
    if (FAILED(hr))
        return hr;
    *ppAlloc = own.release();
    return S_OK;
}

HRESULT CBaseOutputPin::OfferAllocator(IMemInputPin* pPin, IMemAllocator* pAlloc) {
    ALLOCATOR_PROPERTIES wanted = {};
    pPin->GetAllocatorRequirements(&wanted);
    if (wanted.cbAlign == 0)
        wanted.cbAlign = 1;
    const HRESULT hr = DecideBufferSize(pAlloc, &wanted);
    return FAILED(hr) ? hr : pPin->NotifyAllocator(pAlloc, FALSE);
}

HRESULT CBaseOutputPin::InitAllocator(IMemAllocator** ppAlloc) {
    return CreateMemoryAllocator(ppAlloc);
}

HRESULT CBaseOutputPin::GetDeliveryBuffer(IMediaSample** ppSample, REFERENCE_TIME* pStartTime,
                                          REFERENCE_TIME* pEndTime, DWORD dwFlags) {
    return m_pAllocator ? m_pAllocator->GetBuffer(ppSample, pStartTime, pEndTime, dwFlags) : E_NOINTERFACE;
}

HRESULT CBaseOutputPin::Deliver(IMediaSample* pSample) {
    return m_pInputPin ? m_pInputPin->Receive(pSample) : VFW_E_NOT_CONNECTED;
}

template <class... Parameters>
HRESULT CBaseOutputPin::CallPeer(HRESULT (STDMETHODCALLTYPE IPin::*method)(Parameters...),
                                 std::type_identity_t<Parameters>... arguments) {
    IPin* raw = nullptr;
    const HRESULT hr = ConnectedTo(&raw);
    if (FAILED(hr))
        return hr;
    const ComRef<IPin> peer(raw);
    return (raw->*method)(arguments...);
}

HRESULT CBaseOutputPin::DeliverEndOfStream() {
    return CallPeer(&IPin::EndOfStream);
}

HRESULT CBaseOutputPin::DeliverBeginFlush() {
    return CallPeer(&IPin::BeginFlush);
}

HRESULT CBaseOutputPin::DeliverEndFlush() {
    return CallPeer(&IPin::EndFlush);
}

HRESULT CBaseOutputPin::DeliverNewSegment(REFERENCE_TIME tStart, REFERENCE_TIME tStop, double dRate) {
    return CallPeer(&IPin::NewSegment, tStart, tStop, dRate);
}
