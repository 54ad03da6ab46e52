// The pins of a transform filter: they forward to it.
#pragma once

#include "baseclasses/BaseInputPin.h"
#include "baseclasses/BaseOutputPin.h"
#include "baseclasses/ComRef.h"

class CTransformFilter;

class CTransformInputPin : public CBaseInputPin {
  public:
    CTransformInputPin(LPCTSTR pObjectName, CTransformFilter* pTransformFilter, HRESULT* phr, LPCWSTR pName);

    /// "In".
    STDMETHODIMP QueryId(LPWSTR* Id) override;
    STDMETHODIMP EndOfStream() override;
    STDMETHODIMP BeginFlush() override;
    STDMETHODIMP EndFlush() override;
    STDMETHODIMP NewSegment(REFERENCE_TIME tStart, REFERENCE_TIME tStop, double dRate) override;
    STDMETHODIMP Receive(IMediaSample* pSample) override;

    HRESULT CheckConnect(IPin* pPin) override;
    HRESULT BreakConnect() override;
    HRESULT CompleteConnect(IPin* pReceivePin) override;
    HRESULT SetMediaType(const CMediaType* pmt) override;
    /// VFW_E_NOT_CONNECTED also when the output is not connected.
    HRESULT CheckStreaming() override;

  protected:
    CTransformFilter* m_pTransformFilter;
};

class CTransformOutputPin : public CBaseOutputPin {
  public:
    CTransformOutputPin(LPCTSTR pObjectName, CTransformFilter* pTransformFilter, HRESULT* phr, LPCWSTR pName);

    /// Also IMediaSeeking and IMediaPosition, which are passed upstream.
    STDMETHODIMP NonDelegatingQueryInterface(REFIID riid, void** ppv) override;
    /// "Out".
    STDMETHODIMP QueryId(LPWSTR* Id) override;
    /// To the filter, and if that does not use it, to the input pin's sink or upstream.
    STDMETHODIMP Notify(IBaseFilter* pSelf, Quality q) override;

    /// E_UNEXPECTED while the input is not connected.
    HRESULT CheckConnect(IPin* pPin) override;
    HRESULT BreakConnect() override;
    HRESULT CompleteConnect(IPin* pReceivePin) override;
    HRESULT SetMediaType(const CMediaType* pmt) override;
    HRESULT GetMediaType(int iPosition, CMediaType* pMediaType) override;
    HRESULT DecideBufferSize(IMemAllocator* pAlloc, ALLOCATOR_PROPERTIES* pProp) override;

  protected:
    CTransformFilter* m_pTransformFilter;

  private:
    CCritSec m_positionLock;
    ComRef<IUnknown> m_pPosition;
};
