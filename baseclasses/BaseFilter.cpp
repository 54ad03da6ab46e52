#include "baseclasses/BaseFilter.h"

#include "baseclasses/BasePin.h"
#include "baseclasses/ComRef.h"
#include "baseclasses/Enumerators.h"
#include "baseclasses/WideString.h"

#include <string_view>
#include <utility>

CBaseFilter::CBaseFilter(LPCTSTR pName, LPUNKNOWN pUnk, CCritSec* pLock, REFCLSID clsid)
    : CUnknown(pName, pUnk), m_clsid(clsid), m_pLock(pLock) {}

CBaseFilter::CBaseFilter(LPCTSTR pName, LPUNKNOWN pUnk, CCritSec* pLock, REFCLSID clsid, HRESULT*)
    : CBaseFilter(pName, pUnk, pLock, clsid) {}

CBaseFilter::~CBaseFilter() {
    if (m_pClock)
        m_pClock->Release();
}

STDMETHODIMP CBaseFilter::NonDelegatingQueryInterface(REFIID riid, void** ppv) {
    if (riid == IID_IBaseFilter || riid == IID_IMediaFilter || riid == IID_IPersist)
        return GetInterface(static_cast<IBaseFilter*>(this), ppv);
    return CUnknown::NonDelegatingQueryInterface(riid, ppv);
}

STDMETHODIMP CBaseFilter::GetClassID(CLSID* pClsID) {
    if (!pClsID)
        return E_POINTER;
    *pClsID = m_clsid;
    return S_OK;
}

CBasePin* CBaseFilter::ConnectedPin(int n) {
    CBasePin* pin = GetPin(n);
    return pin && pin->IsConnected() ? pin : nullptr;
}

STDMETHODIMP CBaseFilter::Stop() {
    CAutoLock lock(m_pLock);
    HRESULT result = S_OK;
    if (m_State != State_Stopped) {
        for (int n = 0; n < GetPinCount(); ++n) {
            CBasePin* pin = ConnectedPin(n);
            if (!pin)
                continue;
            const HRESULT hr = pin->Inactive();
            if (FAILED(hr) && SUCCEEDED(result))
                result = hr;
        }
    }
    m_State = State_Stopped;
    return result;
}

STDMETHODIMP CBaseFilter::Pause() {
    CAutoLock lock(m_pLock);
    if (m_State == State_Stopped) {
        for (int n = 0; n < GetPinCount(); ++n) {
            CBasePin* pin = ConnectedPin(n);
            if (!pin)
                continue;
            const HRESULT hr = pin->Active();
            if (SUCCEEDED(hr))
                continue;
            // The filter stays stopped, so nothing may stay committed.
            while (--n >= 0)
                if (CBasePin* active = ConnectedPin(n))
                    active->Inactive();
            return hr;
        }
    }
    m_State = State_Paused;
    return S_OK;
}

STDMETHODIMP CBaseFilter::Run(REFERENCE_TIME tStart) {
    CAutoLock lock(m_pLock);
    if (m_State == State_Stopped) {
        const HRESULT hr = Pause();
        if (FAILED(hr))
            return hr;
    }
    if (m_State != State_Running) {
        for (int n = 0; n < GetPinCount(); ++n) {
            CBasePin* pin = ConnectedPin(n);
            if (!pin)
                continue;
            const HRESULT hr = pin->Run(tStart);
            if (FAILED(hr))
                return hr;
        }
    }
    m_State = State_Running;
    return S_OK;
}

STDMETHODIMP CBaseFilter::GetState(DWORD, FILTER_STATE* State) {
    if (!State)
        return E_POINTER;
    *State = m_State;
    return S_OK;
}

STDMETHODIMP CBaseFilter::SetSyncSource(IReferenceClock* pClock) {
    if (pClock)
        pClock->AddRef();
    {
        CAutoLock lock(&m_infoLock);
        std::swap(m_pClock, pClock);
    }
    if (pClock)
        pClock->Release();
    return S_OK;
}

STDMETHODIMP CBaseFilter::GetSyncSource(IReferenceClock** pClock) {
    if (!pClock)
        return E_POINTER;
    CAutoLock lock(&m_infoLock);
    if (m_pClock)
        m_pClock->AddRef();
    *pClock = m_pClock;
    return S_OK;
}

STDMETHODIMP CBaseFilter::EnumPins(IEnumPins** ppEnum) {
    if (!ppEnum)
        return E_POINTER;
    *ppEnum = new (std::nothrow) CEnumPins(this);
    if (!*ppEnum)
        return E_OUTOFMEMORY;
    (*ppEnum)->AddRef();
    return S_OK;
}

STDMETHODIMP CBaseFilter::FindPin(LPCWSTR Id, IPin** ppPin) {
    if (!Id || !ppPin)
        return E_POINTER;
    *ppPin = nullptr;
    for (int n = 0; n < GetPinCount(); ++n) {
        CBasePin* pin = GetPin(n);
        if (!pin || std::wstring_view(pin->Name()) != Id)
            continue;
        *ppPin = pin;
        pin->AddRef();
        return S_OK;
    }
    return VFW_E_NOT_FOUND;
}

STDMETHODIMP CBaseFilter::QueryFilterInfo(FILTER_INFO* pInfo) {
    if (!pInfo)
        return E_POINTER;
    CAutoLock lock(&m_infoLock);
    CopyToNameField(pInfo->achName, MAX_FILTER_NAME, m_name);
    pInfo->pGraph = m_pGraph;
    if (m_pGraph)
        m_pGraph->AddRef();
    return S_OK;
}

STDMETHODIMP CBaseFilter::JoinFilterGraph(IFilterGraph* pGraph, LPCWSTR pName) {
    // A reference of the filter's to the graph that holds it would keep both alive for ever.
    ComRef<IMediaEventSink> sink;
    if (pGraph)
        sink = QueryFor<IMediaEventSink>(pGraph, IID_IMediaEventSink);
    CAutoLock lock(&m_infoLock);
    m_pGraph = pGraph;
    m_pSink = sink.get();
    CopyToNameField(m_name, MAX_FILTER_NAME, pName);
    return S_OK;
}

STDMETHODIMP CBaseFilter::QueryVendorInfo(LPWSTR*) {
    return E_NOTIMPL;
}

HRESULT CBaseFilter::NotifyEvent(LONG EventCode, LONG_PTR EventParam1, LONG_PTR EventParam2) {
    IMediaEventSink* sink = nullptr;
    {
        CAutoLock lock(&m_infoLock);
        sink = m_pSink;
    }
    return sink ? sink->Notify(EventCode, EventParam1, EventParam2) : E_NOTIMPL;
}

IFilterGraph* CBaseFilter::Graph() {
    CAutoLock lock(&m_infoLock);
    return m_pGraph;
}

HRESULT CBaseFilter::ReconnectPin(IPin* pPin, const AM_MEDIA_TYPE* pmt) {
    IFilterGraph* graph = Graph();
    if (!graph)
        return E_NOINTERFACE;
    if (const auto graph2 = QueryFor<IFilterGraph2>(graph, IID_IFilterGraph2))
        return graph2->ReconnectEx(pPin, pmt);
    return graph->Reconnect(pPin);
}
