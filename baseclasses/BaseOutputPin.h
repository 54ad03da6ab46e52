// The base of every output pin that delivers samples: choosing an allocator, and calls to the peer.
#pragma once

#include "baseclasses/BasePin.h"

#include <type_traits>

class CBaseOutputPin : public CBasePin {
  public:
    CBaseOutputPin(LPCTSTR pObjectName, CBaseFilter* pFilter, CCritSec* pLock, HRESULT* phr, LPCWSTR pName);
    ~CBaseOutputPin() override;

    HRESULT CheckConnect(IPin* pPin) override;
    HRESULT CompleteConnect(IPin* pReceivePin) override;
    HRESULT BreakConnect() override;
    HRESULT Active() override;
    HRESULT Inactive() override;

    /// Those calls are for input pins: E_UNEXPECTED.
    STDMETHODIMP EndOfStream() override;
    STDMETHODIMP BeginFlush() override;
    STDMETHODIMP EndFlush() override;

    /// Gives the connection an allocator that both sides agree on, with one reference: the peer's, else a
    /// new one of InitAllocator.
    virtual HRESULT DecideAllocator(IMemInputPin* pPin, IMemAllocator** pAlloc);
    /// Sets the properties of `pAlloc`; `ppropInputRequest` holds what the peer requires.
    virtual HRESULT DecideBufferSize(IMemAllocator* pAlloc, ALLOCATOR_PROPERTIES* ppropInputRequest) = 0;
    virtual HRESULT InitAllocator(IMemAllocator** ppAlloc);

    /// A free buffer of the connection's allocator; waits for one unless `dwFlags` has AM_GBF_NOWAIT.
    virtual HRESULT GetDeliveryBuffer(IMediaSample** ppSample, REFERENCE_TIME* pStartTime,
                                      REFERENCE_TIME* pEndTime, DWORD dwFlags);
    /// Calls to the peer; VFW_E_NOT_CONNECTED without one.
    virtual HRESULT Deliver(IMediaSample* pSample);
    virtual HRESULT DeliverEndOfStream();
    virtual HRESULT DeliverBeginFlush();
    virtual HRESULT DeliverEndFlush();
    virtual HRESULT DeliverNewSegment(REFERENCE_TIME tStart, REFERENCE_TIME tStop, double dRate);

  protected:
    IMemAllocator* m_pAllocator = nullptr;
    IMemInputPin* m_pInputPin = nullptr;

    /// The peer's allocator, or a new one when that is `unwanted` or the two sides can't agree on it.
    HRESULT ChooseAllocator(IMemInputPin* pPin, const IMemAllocator* unwanted, IMemAllocator** ppAlloc);

  private:
    /// Calls `method` of the peer, which stays alive meanwhile; VFW_E_NOT_CONNECTED without one.
    template <class... Parameters>
    HRESULT CallPeer(HRESULT (STDMETHODCALLTYPE IPin::*method)(Parameters...),
                     std::type_identity_t<Parameters>... arguments);
    HRESULT OfferAllocator(IMemInputPin* pPin, IMemAllocator* pAlloc);
};
