// The base of every filter: states, clock, graph membership and enumeration of pins.
#pragma once

#include "baseclasses/Locks.h"
#include "baseclasses/Unknown.h"

#include <dshow.h>

#include <atomic>

class CBasePin;

/// A derived class says how many pins there are and which. State changes go to the connected pins
/// (Active, Run, Inactive) under the filter's lock. The graph is not referenced: it outlives its filters.
///
/// Pins, name, graph and clock can be asked for at any time, on any thread, also within Receive while another
/// thread stops the filter: none of these questions takes the filter's lock.
class CBaseFilter : public CUnknown, public IBaseFilter {
  public:
    /// `pLock` is the filter's state lock; it belongs to the derived class.
    CBaseFilter(LPCTSTR pName, LPUNKNOWN pUnk, CCritSec* pLock, REFCLSID clsid);
    CBaseFilter(LPCTSTR pName, LPUNKNOWN pUnk, CCritSec* pLock, REFCLSID clsid, HRESULT* phr);
    ~CBaseFilter() override;

    DECLARE_IUNKNOWN
    STDMETHODIMP NonDelegatingQueryInterface(REFIID riid, void** ppv) override;

    STDMETHODIMP GetClassID(CLSID* pClsID) override;

    STDMETHODIMP Stop() override;
    STDMETHODIMP Pause() override;
    STDMETHODIMP Run(REFERENCE_TIME tStart) override;
    STDMETHODIMP GetState(DWORD dwMSecs, FILTER_STATE* State) override;
    STDMETHODIMP SetSyncSource(IReferenceClock* pClock) override;
    STDMETHODIMP GetSyncSource(IReferenceClock** pClock) override;

    STDMETHODIMP EnumPins(IEnumPins** ppEnum) override;
    /// Finds a pin by its name; a class whose pins have other ids overrides it.
    STDMETHODIMP FindPin(LPCWSTR Id, IPin** ppPin) override;
    STDMETHODIMP QueryFilterInfo(FILTER_INFO* pInfo) override;
    STDMETHODIMP JoinFilterGraph(IFilterGraph* pGraph, LPCWSTR pName) override;
    STDMETHODIMP QueryVendorInfo(LPWSTR* pVendorInfo) override;

    virtual int GetPinCount() = 0;
    /// Pin `n`, no reference added; null outside 0 to GetPinCount() - 1 and when it can't be made.
    virtual CBasePin* GetPin(int n) = 0;

    /// Changes with the set of pins, so that enumerators notice.
    LONG GetPinVersion() const { return m_PinVersion; }
    void IncrementPinVersion() { ++m_PinVersion; }

    bool IsActive() const { return m_State != State_Stopped; }
    bool IsStopped() const { return m_State == State_Stopped; }
    /// Stopped, and no sample is inside any more: connections may change.
    virtual bool IsAtRest() const { return IsStopped(); }

    /// Sends an event to the graph; E_NOTIMPL when there is none or it takes no events.
    HRESULT NotifyEvent(LONG EventCode, LONG_PTR EventParam1, LONG_PTR EventParam2);
    /// Asks the graph to connect `pPin` anew, with `pmt` where it can; E_NOINTERFACE without a graph.
    HRESULT ReconnectPin(IPin* pPin, const AM_MEDIA_TYPE* pmt);

  protected:
    std::atomic<FILTER_STATE> m_State = State_Stopped;
    CLSID m_clsid;
    CCritSec* m_pLock;
    std::atomic<LONG> m_PinVersion = 1;
    /// Guards the clock, the name, the graph, and pins that are made on demand. Nothing else is locked while
    /// it is held.
    CCritSec m_infoLock;
    IReferenceClock* m_pClock = nullptr;
    WCHAR m_name[MAX_FILTER_NAME] = {};
    IFilterGraph* m_pGraph = nullptr;
    IMediaEventSink* m_pSink = nullptr;

    /// Not referenced.
    IFilterGraph* Graph();

  private:
    CBasePin* ConnectedPin(int n);
};
