// The base of every pin: connecting by agreement on a media type, and what a connected pin can be asked.
#pragma once

#include "baseclasses/Locks.h"
#include "baseclasses/MediaType.h"
#include "baseclasses/Unknown.h"

#include <atomic>

class CBaseFilter;

/// A pin shares the reference count of its filter and is deleted by it.
///
/// Connections change only while the filter is at rest, under `m_pLock`. The current type may also change on
/// the streaming thread: ConnectionMediaType and ConnectedTo are safe against that and take no other lock.
class CBasePin : public CUnknown, public IPin, public IQualityControl {
  public:
    CBasePin(LPCTSTR pObjectName, CBaseFilter* pFilter, CCritSec* pLock, HRESULT* phr, LPCWSTR pName,
             PIN_DIRECTION dir);
    ~CBasePin() override;

    DECLARE_IUNKNOWN
    STDMETHODIMP NonDelegatingQueryInterface(REFIID riid, void** ppv) override;
    STDMETHODIMP_(ULONG) NonDelegatingAddRef() override;
    STDMETHODIMP_(ULONG) NonDelegatingRelease() override;

    /// Connects to an input pin: with `pmt` if it is complete, else with the first type from both pins'
    /// enumerations that fits it and both accept.
    STDMETHODIMP Connect(IPin* pReceivePin, const AM_MEDIA_TYPE* pmt) override;
    STDMETHODIMP ReceiveConnection(IPin* pConnector, const AM_MEDIA_TYPE* pmt) override;
    STDMETHODIMP Disconnect() override;
    STDMETHODIMP ConnectedTo(IPin** pPin) override;
    STDMETHODIMP ConnectionMediaType(AM_MEDIA_TYPE* pmt) override;
    STDMETHODIMP QueryPinInfo(PIN_INFO* pInfo) override;
    STDMETHODIMP QueryDirection(PIN_DIRECTION* pPinDir) override;
    STDMETHODIMP QueryId(LPWSTR* Id) override;
    STDMETHODIMP QueryAccept(const AM_MEDIA_TYPE* pmt) override;
    STDMETHODIMP EnumMediaTypes(IEnumMediaTypes** ppEnum) override;
    STDMETHODIMP QueryInternalConnections(IPin** apPin, ULONG* nPin) override;
    STDMETHODIMP EndOfStream() override;
    STDMETHODIMP NewSegment(REFERENCE_TIME tStart, REFERENCE_TIME tStop, double dRate) override;

    STDMETHODIMP Notify(IBaseFilter* pSelf, Quality q) override;
    /// Where quality messages go instead of upstream; not referenced, null for none.
    STDMETHODIMP SetSink(IQualityControl* piqc) override;

    bool IsInput() const { return m_dir == PINDIR_INPUT; }
    bool IsConnected() const { return m_Connected != nullptr; }
    /// The peer, no reference added.
    IPin* GetConnected() const { return m_Connected; }
    /// For the streaming thread and for negotiation; other threads ask ConnectionMediaType.
    const CMediaType& CurrentMediaType() const { return m_mt; }
    bool IsStopped() const;
    LPCWSTR Name() const { return m_name; }
    REFERENCE_TIME CurrentStartTime() const { return m_tStart; }
    REFERENCE_TIME CurrentStopTime() const { return m_tStop; }
    double CurrentRate() const { return m_dRate; }

    /// Changes with the list of preferred types, so that enumerators notice.
    LONG GetMediaTypeVersion() const { return m_TypeVersion; }
    void IncrementTypeVersion() { ++m_TypeVersion; }

    /// Called for a connected pin when its filter leaves the stopped state, starts running, stops.
    virtual HRESULT Active();
    virtual HRESULT Run(REFERENCE_TIME tStart);
    virtual HRESULT Inactive();

    /// S_OK to accept; any other value refuses.
    virtual HRESULT CheckMediaType(const CMediaType* pmt) = 0;
    /// Makes an accepted type the current one.
    virtual HRESULT SetMediaType(const CMediaType* pmt);
    /// The pin's preferred type number `iPosition`; VFW_S_NO_MORE_ITEMS past the last.
    virtual HRESULT GetMediaType(int iPosition, CMediaType* pMediaType);

    /// The steps of connecting: whether the peer will do, what to do once the type is agreed, and how to
    /// undo both.
    virtual HRESULT CheckConnect(IPin* pPin);
    virtual HRESULT CompleteConnect(IPin* pReceivePin);
    virtual HRESULT BreakConnect();

  protected:
    std::atomic<IPin*> m_Connected = nullptr; ///< changes under m_connectionLock
    const PIN_DIRECTION m_dir;
    CCritSec* m_pLock;
    std::atomic<bool> m_bRunTimeError = false;
    bool m_bTryMyTypesFirst = false;
    CBaseFilter* m_pFilter;
    std::atomic<IQualityControl*> m_pQSink = nullptr;
    std::atomic<LONG> m_TypeVersion = 1;
    CMediaType m_mt;
    REFERENCE_TIME m_tStart = 0;
    REFERENCE_TIME m_tStop = 0x7FFFFFFFFFFFFFFF;
    double m_dRate = 1.0;

    HRESULT AgreeMediaType(IPin* pReceivePin, const CMediaType* pmt);
    HRESULT TryMediaTypes(IPin* pReceivePin, const CMediaType* pmt, IEnumMediaTypes* pEnum);
    HRESULT AttemptConnection(IPin* pReceivePin, const CMediaType* pmt);

  private:
    HRESULT BeginConnection(IPin* pPeer, const CMediaType* pmt);
    void AbandonConnection();
    void SetConnected(IPin* pPin);

    WCHAR m_name[MAX_PIN_NAME];
    /// Guards m_mt, and m_Connected with its reference. Nothing else is locked while it is held.
    CCritSec m_connectionLock;
};
